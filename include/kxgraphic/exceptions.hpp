// kxgraphic: the exception classes (C++17). They are made from the list of errors: the root KX_Exception, a class for
// each group of faults (KX_GeneralException) and a leaf for each code (KX_OutOfMemory_Exception).
// SPDX-License-Identifier: MIT
#ifndef KXGRAPHIC_EXCEPTIONS_HPP
#define KXGRAPHIC_EXCEPTIONS_HPP

#include <cstddef>
#include <cstdint>

/// A fault. The only one that ever leaves the library is that of KX_reportError when the log cannot be opened.
/// The classes are plain records that own nothing; catch them by reference.
struct KX_Exception {
  const char* text = nullptr;       ///< what happened: German, Windows-1252, static
  const char* groupText = nullptr;  ///< the group of the fault: German, Windows-1252, static
  std::uint32_t code = 0;           ///< the result code, as in kxgraphic/errors.h
};

namespace kx::fault_texts {

/// A text of at most Size - 1 bytes and its NUL.
template <std::size_t Size>
struct Windows1252 {
  char bytes[Size] = {};
};

/// Converts at compile time; a character beyond Latin-1 does not compile. U+00A0 to U+00FF have their number as their
/// byte, and in UTF-8 two bytes: 110000vv 10vvvvvv.
template <typename Unit, std::size_t Size>
constexpr Windows1252<Size> fromUtf8(const Unit (&text)[Size]) {
  Windows1252<Size> result;
  std::size_t length = 0;
  for (std::size_t i = 0; i < Size; ++i) {
    auto character = static_cast<unsigned char>(text[i]);
    if (character >= 0x80) {
      const auto low = static_cast<unsigned char>(text[++i]);
      if ((character != 0xC2 || low < 0xA0) && character != 0xC3) throw "not a character of Latin-1";
      character = static_cast<unsigned char>((character & 3) << 6 | (low & 0x3F));
    }
    result.bytes[length++] = static_cast<char>(character);
  }
  return result;
}

#define KX_ERROR_GROUP(name, text) inline constexpr auto name##Group = fromUtf8(u8##text);
#define KX_ERROR(code, leaf, group, text, english) inline constexpr auto leaf##Text = fromUtf8(u8##text);
#include "exports/errors.inc"
#undef KX_ERROR_GROUP
#undef KX_ERROR

}  // namespace kx::fault_texts

#define KX_ERROR_GROUP(name, text) \
  struct KX_##name##Exception : KX_Exception {};
#define KX_ERROR(faultCode, leaf, group, message, english) \
  struct KX_##leaf##_Exception : KX_##group##Exception {   \
    constexpr KX_##leaf##_Exception() noexcept {           \
      text = kx::fault_texts::leaf##Text.bytes;            \
      groupText = kx::fault_texts::group##Group.bytes;     \
      code = faultCode;                                    \
    }                                                      \
  };
#include "exports/errors.inc"
#undef KX_ERROR_GROUP
#undef KX_ERROR

#endif
