// Argument tests that every export shares.
// SPDX-License-Identifier: MIT
#pragma once

#include "frame/result.h"
#include "platform/platform.h"

namespace kx {

/// True when the four bytes at p cannot be written; used on handles and outputs.
inline bool isBadWritePointer(const void* p) { return !platform::isWritable(p); }

/// True when the four bytes at p cannot be read; used on input data.
inline bool isBadReadPointer(const void* p) { return !platform::isReadable(p); }

/// IllegalParameter unless every pointer can be written, tested in the order given.
template <typename... Pointers>
Result checkWritable(const Pointers*... pointers) {
  return (isBadWritePointer(pointers) || ...) ? Result::IllegalParameter : Result::Ok;
}

/// The version word that every method table and record carries.
constexpr std::uint32_t currentVersion = 0x10000;

}  // namespace kx
