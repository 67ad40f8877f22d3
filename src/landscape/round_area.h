// The mask of a round area: a closed shape around a centre whose radius wanders at random between two bounds.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "frame/heap.h"
#include "frame/result.h"
#include "kxgraphic/types.h"

namespace kx {

/// A round area as the caller describes it.
struct RoundArea {
  std::uint32_t seed;
  std::int32_t centreX, centreY;  ///< cells
  std::int32_t innerRadius, outerRadius;
  std::int32_t roughness;
};

/// One value per cell of the map, not 0 inside the area; the outline counts as inside.
using AreaMask = HeapArray<std::uint16_t>;

/// OutOfMemory; CoordinateOutOfRange when the centre lies outside the map; IllegalParameter.
Result makeAreaMask(AreaMask* result, const Landscape& landscape, const RoundArea& area);

}  // namespace kx
