// What the kernels for AVX-512 share. Internal linkage throughout.
// SPDX-License-Identifier: MIT
#pragma once

#if defined(__GNUC__) && !defined(__clang__)
// The compiler's own header starts permutations from a register it never sets.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#pragma GCC diagnostic ignored "-Wuninitialized"
#endif
#include <immintrin.h>

#include <cstddef>
#include <cstdint>

namespace kx {

namespace {

constexpr std::size_t registerBytes = 64;

/// The lowest `count` bits; all of them from 64 on.
inline __mmask64 lowest(std::uint64_t count) { return count >= 64 ? ~__mmask64{0} : (__mmask64{1} << count) - 1; }

/// Byte numbers of interleaved elements: of each byte of three registers its element and its place in it.
struct Interleaving {
  std::uint8_t element[3 * registerBytes], blueOrGreen[3 * registerBytes], place[3 * registerBytes];

  constexpr Interleaving() : element(), blueOrGreen(), place() {
    for (std::size_t j = 0; j < sizeof element; ++j) {
      element[j] = static_cast<std::uint8_t>(j / 3);
      place[j] = static_cast<std::uint8_t>(j % 3);
      blueOrGreen[j] = static_cast<std::uint8_t>(j / 3 + (j % 3 == 1 ? 64 : 0));
    }
  }
};
constexpr Interleaving interleaving;

/// Stores what belongs to the first `bytes` bytes of a row, `skip` bytes into it.
inline void storePart(std::uint8_t* dst, std::size_t skip, std::size_t bytes, __m512i value) {
  if (bytes >= skip + registerBytes)
    _mm512_storeu_si512(dst + skip, value);
  else if (bytes > skip)
    _mm512_mask_storeu_epi8(dst + skip, lowest(bytes - skip), value);
}

/// 256 bytes as a table.
struct BytePlane {
  __m512i quarter[4];

  [[nodiscard]] __m512i at(__m512i index) const {
    const __m512i low = _mm512_permutex2var_epi8(quarter[0], index, quarter[1]);
    const __m512i high = _mm512_permutex2var_epi8(quarter[2], index, quarter[3]);
    return _mm512_mask_blend_epi8(_mm512_movepi8_mask(index), low, high);
  }
};

}  // namespace

}  // namespace kx
