// Result codes: the numbers of the exception classes, made from the one list of errors.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace kx {

/// 0 or the code of a fault. Codes of drivers may be any number.
enum class [[nodiscard]] Result : std::uint32_t{
    Ok = 0,
#define KX_ERROR_GROUP(name, text)
#define KX_ERROR(code, leaf, group, text, english) leaf = (code),
#include "kxgraphic/exports/errors.inc"
#undef KX_ERROR_GROUP
#undef KX_ERROR
};

/// The code as the interface returns it.
constexpr std::uint32_t toCode(Result result) { return static_cast<std::uint32_t>(result); }

/// What an entry of a method table returned.
constexpr Result fromCode(std::uint32_t code) { return static_cast<Result>(code); }

}  // namespace kx

/// Leaves the function with the first result that is not Ok.
#define KX_TRY(call) \
  if (const ::kx::Result kxTried = (call); kxTried != ::kx::Result::Ok) return kxTried
