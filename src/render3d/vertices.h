// The corners of a triangle: reading them from the caller's records and putting them in order.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

#include "kxgraphic/types.h"

namespace kx {

/// Positions and texel coordinates are limited to this range on either side of 0, so that they fit 16.16 fixed point.
constexpr std::int32_t greatestCoordinate = 32767;

enum class Rounding { ToNearest, TowardZero };

/// The integer nearest to the float with these bits, or the one next towards zero, limited to +-greatestCoordinate. A
/// half goes to the even neighbour, a NaN to 0. Neither the rounding mode nor the exception masks of the processor
/// matter.
std::int32_t toCoordinate(std::uint32_t floatBits, Rounding rounding);

using Corners = std::array<VertexInt, 3>;

/// How the caller stores the first five fields of a vertex.
enum class VertexFields { Floats, Integers };

/// The x fields alone, rounded to nearest.
std::array<std::int32_t, 3> readColumns(const void* vertices, VertexFields fields);

/// x, y, u, v and shade of the three vertices; z is not used and left 0.
Corners readCorners(const void* vertices, VertexFields fields, Rounding rounding);

/// Orders the corners from top to bottom; a flat top has its two corners left to right. Ties keep the earlier vertex.
/// False for a triangle that covers nothing: all on one row, or a flat top of one column.
bool orderCorners(Corners& corners);

}  // namespace kx
