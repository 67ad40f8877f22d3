// SPDX-License-Identifier: MIT
#include "blit/convert.h"

#include <array>

#include "pixel/blend_rules.h"
#include "pixel/channels.h"

namespace kx {

namespace {

/// Bytes of a pixel in a row that is being converted.
constexpr std::size_t rowBytes(std::uint32_t format) { return bytesPerPixel(format) == 0 ? 1 : bytesPerPixel(format); }

constexpr std::uint32_t asSource(std::uint32_t format) {
  return format == KX_FORMAT_PALETTE ? std::uint32_t{KX_FORMAT_888} : format;
}

template <std::uint32_t From, std::uint32_t To>
void convert(std::uint8_t* dst, const std::uint8_t* src, std::size_t count, NearestEntries* entries) {
  constexpr std::size_t fromBytes = rowBytes(From), toBytes = rowBytes(To);
  for (std::size_t i = 0; i < count; ++i) {
    const Rgb colour = toChannels(From, loadPixel<fromBytes>(src + i * fromBytes));
    if constexpr (To == KX_FORMAT_PALETTE)
      dst[i] = entries->find(colour);
    else
      storePixel<toBytes>(dst + i * toBytes, fromChannels(To, colour));
  }
}

template <std::uint32_t From>
constexpr std::array<ConvertRow, 8> rowsFrom() {
  return {convert<From, KX_FORMAT_MONO>,
          nullptr,
          nullptr,
          convert<From, KX_FORMAT_GREY>,
          convert<From, KX_FORMAT_PALETTE>,
          convert<From, KX_FORMAT_555>,
          convert<From, KX_FORMAT_565>,
          convert<From, KX_FORMAT_888>};
}

constexpr std::uint32_t unknownFormat = 1;

constexpr std::array<ConvertRow, 8> conversions[8] = {
    rowsFrom<KX_FORMAT_MONO>(),
    rowsFrom<unknownFormat>(),
    rowsFrom<unknownFormat>(),
    rowsFrom<KX_FORMAT_GREY>(),
    rowsFrom<asSource(KX_FORMAT_PALETTE)>(),
    rowsFrom<KX_FORMAT_555>(),
    rowsFrom<KX_FORMAT_565>(),
    rowsFrom<KX_FORMAT_888>(),
};

}  // namespace

NearestEntries::NearestEntries(const std::uint8_t* palette) : planes_(splitPalette(palette)) {
  const std::uint32_t ofBlack = nearestEntry(planes_, Rgb{0, 0, 0});
  for (std::uint32_t& pair : recent_) pair = ofBlack << 24;
}

std::uint8_t NearestEntries::find(Rgb colour) {
  const std::uint32_t value = colour.b | std::uint32_t{colour.g} << 8 | std::uint32_t{colour.r} << 16;
  std::uint32_t& pair = recent_[(value * 0x9E3779B1u) >> 24];
  if ((pair & 0xFFFFFF) != value) pair = value | nearestEntry(planes_, colour) << 24;
  return static_cast<std::uint8_t>(pair >> 24);
}

ConvertRow convertRow(std::uint32_t from, std::uint32_t to) {
  const std::uint32_t target = formatCode(to), source = formatCode(from);
  if (target >= 8) return nullptr;
  return conversions[source < 8 ? source : unknownFormat][target];
}

}  // namespace kx
