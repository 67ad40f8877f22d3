// The rules of the image operations for one pixel. They stand here; the vector kernels compute the same in other words.
// Internal linkage: files of every instruction set include this.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>

#include "pixel/image_rows.h"

namespace kx {

namespace {

constexpr std::uint32_t widen5(std::uint32_t c) { return (c << 3 | 7) & 0xFF; }

/// Settled: the lowest bit of a six-bit green is lost under the ones that fill the low bits.
constexpr std::uint32_t widen6(std::uint32_t c) { return (c << 2 | 7) & 0xFF; }

/// Three channels of eight bits.
struct Channels {
  std::uint32_t r, g, b;
};

/// A 16-bit pixel of format 5 or 6 (six bits of green) in channels of eight bits, and back.
template <bool SixBitGreen>
constexpr Channels widen(std::uint32_t value) {
  if constexpr (SixBitGreen) return {widen5(value >> 11 & 0x1F), widen6(value >> 5 & 0x3F), widen5(value & 0x1F)};
  return {widen5(value >> 10 & 0x1F), widen5(value >> 5 & 0x1F), widen5(value & 0x1F)};
}

template <bool SixBitGreen>
constexpr std::uint32_t narrow(Channels c) {
  if constexpr (SixBitGreen) return c.r >> 3 << 11 | c.g >> 2 << 5 | c.b >> 3;
  return c.r >> 3 << 10 | c.g >> 3 << 5 | c.b >> 3;
}

/// The mean of the greatest and the least channel, cut to an integer.
constexpr std::uint32_t lightness(Channels c) { return (std::max({c.r, c.g, c.b}) + std::min({c.r, c.g, c.b})) >> 1; }

/// The sum of the weighted channels in thousandths.
constexpr std::uint32_t greyThousandths(Channels c) { return 299 * c.r + 557 * c.g + 144 * c.b; }

/// Grey of a pixel: 0.299 red + 0.557 green + 0.144 blue to the nearest integer. The sum of integers says the same
/// except where it is exactly half way, where double precision, term by term in this order, decides.
constexpr std::uint32_t imageGrey(Channels c) {
  const std::uint32_t sum = greyThousandths(c) + 500;
  if (sum % 1000 != 0) return sum / 1000;
  const double exact = 0.299 * static_cast<std::int32_t>(c.r) + 0.557 * static_cast<std::int32_t>(c.g) +
                       0.144 * static_cast<std::int32_t>(c.b);
  const std::uint32_t below = sum / 1000 - 1;
  const double half = below + 0.5;
  return exact > half || (exact == half && (below & 1) != 0) ? below + 1 : below;
}

/// The factor, in 256ths, for a pixel of lightness v.
constexpr std::uint32_t brightnessFactor(const BrightnessRule& rule, std::uint32_t v) {
  const auto value = static_cast<std::int32_t>(v);
  return value > rule.pivot ? rule.above : value < rule.pivot ? rule.below : rule.at;
}

constexpr std::uint32_t scaleChannel(std::uint32_t c, std::uint32_t factor) { return std::min(255u, c * factor >> 8); }

constexpr Channels scaleChannels(Channels c, std::uint32_t factor) {
  return {scaleChannel(c.r, factor), scaleChannel(c.g, factor), scaleChannel(c.b, factor)};
}

/// What is stored for a pixel: transparent images keep their pixels of value 0, and get no new ones.
constexpr std::uint32_t keepVisible(const BrightnessRule& rule, std::uint32_t before, std::uint32_t after) {
  if (!rule.transparent) return after;
  return before == 0 ? 0 : std::max(after, 1u);
}

constexpr std::uint32_t brighten8(const BrightnessRule& rule, std::uint32_t value) {
  return keepVisible(rule, value, scaleChannel(value, brightnessFactor(rule, value)));
}

/// Settled: the factor of 256 changes nothing, although widening a pixel and cutting it again would.
template <bool SixBitGreen>
constexpr std::uint32_t brighten16(const BrightnessRule& rule, std::uint32_t value) {
  const Channels channels = widen<SixBitGreen>(value);
  const std::uint32_t factor = brightnessFactor(rule, lightness(channels));
  if (factor == 256) return value;
  return keepVisible(rule, value, narrow<SixBitGreen>(scaleChannels(channels, factor)));
}

constexpr std::uint32_t brighten24(const BrightnessRule& rule, std::uint32_t value) {
  const Channels channels{value >> 16 & 0xFF, value >> 8 & 0xFF, value & 0xFF};
  const Channels scaled = scaleChannels(channels, brightnessFactor(rule, lightness(channels)));
  return keepVisible(rule, value, scaled.r << 16 | scaled.g << 8 | scaled.b);
}

}  // namespace

}  // namespace kx
