// The nearest-entry search for vectors of bytes. A kernel file instantiates it with `V`, the operations of its
// instruction set on one register of V::width bytes.
// SPDX-License-Identifier: MIT
#pragma once

#include "bitmap/nearest_kernels.h"

namespace kx {

namespace {

/// Searches with distances in bytes: `Step` is how many times 255 is taken off the sum of three channels, which must be
/// at least that for every entry. What lies beyond a byte counts as 255; if all do, the next step decides.
template <typename V, int Step>
std::uint32_t findVector(const PalettePlanes* planes, std::uint8_t blue, std::uint8_t green, std::uint8_t red) {
  constexpr std::uint32_t vectors = 256 / V::width;
  const auto b = V::splat(blue);
  const auto g = V::splat(green);
  const auto r = V::splat(red);
  const auto difference = [](const std::uint8_t* plane, typename V::Register channel) {
    const auto entries = V::load(plane);
    return V::either(V::subtract(entries, channel), V::subtract(channel, entries));
  };
  typename V::Register distances[vectors];
  auto least = V::splat(255);
  for (std::uint32_t i = 0; i < vectors; ++i) {
    const auto db = difference(planes->b + i * V::width, b);
    const auto dg = difference(planes->g + i * V::width, g);
    const auto dr = difference(planes->r + i * V::width, r);
    const auto two = V::add(db, dg);
    if constexpr (Step == 0) {
      distances[i] = V::add(two, dr);
    } else {
      // x - (255 - y) is what x + y has beyond 255.
      const auto beyond = V::subtract(db, V::complement(dg));
      const auto beyondToo = V::subtract(two, V::complement(dr));
      distances[i] = Step == 1 ? V::add(beyond, beyondToo) : V::subtract(beyond, V::complement(beyondToo));
    }
    least = V::minimum(least, distances[i]);
  }
  const std::uint8_t nearest = V::leastByte(least);
  if constexpr (Step < 2)
    if (nearest == 255) return findVector<V, Step + 1>(planes, blue, green, red);
  const auto wanted = V::splat(nearest);
  std::uint32_t i = vectors - 1;
  std::uint32_t equal = V::equalBytes(distances[i], wanted);
  while (equal == 0) equal = V::equalBytes(distances[--i], wanted);
  return i * V::width + 31 - static_cast<std::uint32_t>(__builtin_clz(equal));
}

}  // namespace

}  // namespace kx
