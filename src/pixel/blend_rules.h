// The rules of one pixel: transparency, depth, and the two ways of blending. They stand here and nowhere else; the
// vector kernels compute the same in other words. Internal linkage: files of every instruction set include this.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "pixel/memory.h"

namespace kx {

namespace {

/// One channel at constant weight: `alpha` (0 to 255) is the weight of the destination d.
constexpr std::uint32_t mixAlpha(std::uint32_t s, std::uint32_t d, std::uint32_t alpha) {
  return ((255 - alpha) * s + alpha * d) / 255;
}

/// One channel under an alpha map. Settled: the map counts in 256ths where the constant weight counts in 255ths.
constexpr std::uint32_t mixAlphamap(std::uint32_t s, std::uint32_t d, std::uint32_t weight) {
  return (s * (256 - weight) + d * weight) >> 8;
}

/// The map's weight that leaves the destination pixel as it is.
constexpr std::uint32_t keepWeight = 255;

/// Transparent variants skip this value, whatever the format.
constexpr bool isKey(std::uint32_t value) { return value == 0; }

/// Smaller is nearer; equal depths are drawn.
constexpr bool depthPasses(std::int32_t z, std::uint8_t stored) { return z <= stored; }

/// Depth of a source pixel under a Z map, in 32 bits; its low byte is what gets stored.
constexpr std::int32_t mapDepth(std::uint8_t map, std::int32_t offset) {
  return static_cast<std::int32_t>(map + static_cast<std::uint32_t>(offset));
}

/// A field of a pixel value.
struct Channel {
  unsigned shift;
  std::uint32_t mask;
};

/// The formats that can be blended. `channels` are the fields at constant weight, `mapChannels` those under a map.
struct Mono {
  static constexpr std::size_t bytes = 1;
  static constexpr Channel channels[] = {{0, 1}};
};

struct Grey8 {
  static constexpr std::size_t bytes = 1;
  static constexpr Channel channels[] = {{0, 0xFF}};
  static constexpr auto& mapChannels = channels;
};

struct Rgb555 {
  static constexpr std::size_t bytes = 2;
  static constexpr Channel channels[] = {{0, 0x1F}, {5, 0x1F}, {10, 0x1F}};
  static constexpr auto& mapChannels = channels;
};

struct Rgb565 {
  static constexpr std::size_t bytes = 2;
  static constexpr Channel channels[] = {{0, 0x1F}, {5, 0x3F}, {11, 0x1F}};
  // Settled: under a map the lowest bit of green is left out and comes back as 0.
  static constexpr Channel mapChannels[] = {{0, 0x1F}, {6, 0x1F}, {11, 0x1F}};
};

struct Bgr24 {
  static constexpr std::size_t bytes = 3;
  static constexpr Channel channels[] = {{0, 0xFF}, {8, 0xFF}, {16, 0xFF}};
  static constexpr auto& mapChannels = channels;
};

template <std::size_t Bytes>
inline std::uint32_t loadPixel(const std::uint8_t* p) {
  if constexpr (Bytes == 1) return *p;
  if constexpr (Bytes == 2) return load16(p);
  if constexpr (Bytes == 3) return load24(p);
}

template <std::size_t Bytes>
inline void storePixel(std::uint8_t* p, std::uint32_t value) {
  if constexpr (Bytes == 1) *p = static_cast<std::uint8_t>(value);
  if constexpr (Bytes == 2) store16(p, value);
  if constexpr (Bytes == 3) store24(p, value);
}

/// Mixes a pixel channel by channel and puts the channels back in place.
template <std::size_t Count, typename Mix>
constexpr std::uint32_t mixChannels(const Channel (&channels)[Count], std::uint32_t s, std::uint32_t d, Mix mix) {
  std::uint32_t out = 0;
  for (const Channel& c : channels) out |= mix((s >> c.shift) & c.mask, (d >> c.shift) & c.mask) << c.shift;
  return out;
}

/// Pixel values s over d at constant weight.
template <typename Format>
constexpr std::uint32_t blendAlpha(std::uint32_t s, std::uint32_t d, std::uint32_t alpha) {
  return mixChannels(Format::channels, s, d,
                     [alpha](std::uint32_t a, std::uint32_t b) { return mixAlpha(a, b, alpha); });
}

/// A bit counts as a channel of 0 or 255, and is set again from 128 on.
template <>
constexpr std::uint32_t blendAlpha<Mono>(std::uint32_t s, std::uint32_t d, std::uint32_t alpha) {
  return mixAlpha(255 * s, 255 * d, alpha) >> 7;
}

/// Pixel values s over d under a map.
template <typename Format>
constexpr std::uint32_t blendAlphamap(std::uint32_t s, std::uint32_t d, std::uint32_t weight) {
  if (weight == keepWeight) return d;
  return mixChannels(Format::mapChannels, s, d,
                     [weight](std::uint32_t a, std::uint32_t b) { return mixAlphamap(a, b, weight); });
}

template <>
constexpr std::uint32_t blendAlphamap<Mono>(std::uint32_t s, std::uint32_t d, std::uint32_t weight) {
  return weight == keepWeight ? d : mixAlphamap(255 * s, 255 * d, weight) >> 7;
}

}  // namespace

}  // namespace kx
