// The values that break arithmetic, for every kind of argument, and pointers that no program owns.
// SPDX-License-Identifier: MIT
#pragma once

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <iterator>

#include "support/exports.h"

namespace kxtest {

/// Products of two of these overflow 32 bits or just do not; some lie beside the limits of what is allowed.
constexpr std::int32_t extremeNumbers[] = {INT_MIN, INT_MIN + 1, -0x10000,      -0x8001,     -257,    -1,
                                           0,       1,           255,           256,         257,     0x7FFF,
                                           0x8000,  0xB505,      0x10000,       0x10001,     1 << 24, 0x3FFFFFFF,
                                           1 << 30, 0x55555555,  INT_MAX - 127, INT_MAX - 1, INT_MAX};
constexpr std::uint8_t extremeBytes[] = {0, 1, 2, 3, 127, 128, 255};
inline const float extremeReals[] = {0.0f,    -0.0f,    1.0f,   -1.0f,    0.99f,     FLT_MIN,
                                     FLT_MAX, -FLT_MAX, 1e-45f, INFINITY, -INFINITY, NAN};
constexpr std::uintptr_t badAddresses[] = {0, 1, 4, 4096, 65535};

/// The n-th extreme of a kind of number, modulo their count.
inline Argument extreme(Kind kind, std::size_t n) {
  Argument argument{};
  if (kind == Kind::Real)
    argument.real = extremeReals[n % std::size(extremeReals)];
  else if (kind == Kind::Byte)
    argument.byte = extremeBytes[n % std::size(extremeBytes)];
  else
    argument.number = extremeNumbers[n % std::size(extremeNumbers)];
  return argument;
}

constexpr std::size_t extremeCount = std::size(extremeNumbers);

}  // namespace kxtest
