// SPDX-License-Identifier: MIT
#include "support/reference_blit.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace kxtest {

namespace {

struct Colour {
  int r, g, b;
};

int grey(Colour c) { return static_cast<int>(std::nearbyint(0.144 * c.b + 0.299 * c.r + 0.557 * c.g)); }

Colour colourOf(std::uint32_t format, std::uint32_t value, const std::uint8_t* palette) {
  const int v = static_cast<int>(value);
  switch (format) {
    case 0:
      return v != 0 ? Colour{255, 255, 255} : Colour{0, 0, 0};
    case 3:
      return {v, v, v};
    case 4:
      return {palette[3 * v + 2], palette[3 * v + 1], palette[3 * v]};
    case 5:
      return {v / 1024 % 32 * 8 + 7, v / 32 % 32 * 8 + 7, v % 32 * 8 + 7};
    case 6:
      return {v / 2048 * 8 + 7, v / 32 % 64 * 4 + 3, v % 32 * 8 + 7};
    case 7:
      return {v / 65536, v / 256 % 256, v % 256};
    default:
      return {0, 0, 0};
  }
}

std::uint32_t nearest(Colour c, const std::uint8_t* palette) {
  int best = 10000, found = 0;
  for (int i = 0; i < 256; ++i) {
    const int distance =
        std::abs(c.b - palette[3 * i]) + std::abs(c.g - palette[3 * i + 1]) + std::abs(c.r - palette[3 * i + 2]);
    if (distance <= best) {
      best = distance;
      found = i;
    }
  }
  return static_cast<std::uint32_t>(found);
}

std::uint32_t valueOf(std::uint32_t format, Colour c, const std::uint8_t* palette) {
  switch (format) {
    case 0:
      return 0.144 * c.b + 0.299 * c.r + 0.557 * c.g >= 128.0;
    case 3:
      return static_cast<std::uint32_t>(grey(c));
    case 4:
      return nearest(c, palette);
    case 5:
      return static_cast<std::uint32_t>(c.r / 8 * 1024 + c.g / 8 * 32 + c.b / 8);
    case 6:
      return static_cast<std::uint32_t>(c.r / 8 * 2048 + c.g / 4 * 32 + c.b / 8);
    default:
      return static_cast<std::uint32_t>(c.r * 65536 + c.g * 256 + c.b);
  }
}

/// A stored source pixel as the destination stores it.
std::uint32_t translate(const Bitmap& src, std::uint32_t value, const Bitmap& dst) {
  const std::uint32_t from = src.format & 15, to = dst.format & 15;
  if (from == to) return value;
  const Colour colour = colourOf(from, value, src.palette);
  if (from == 4 && to == 3 && src.table8 != nullptr) return src.table8[value];
  if (from == 4 && to == 5 && src.table15 != nullptr) return src.table15[value];
  if (from == 4 && to == 6)
    return src.table16 != nullptr ? src.table16[value]
                                  : static_cast<std::uint32_t>(colour.r / 8 * 2048 + colour.g / 8 * 32 + colour.b / 8);
  return valueOf(to, colour, dst.palette);
}

struct Field {
  unsigned shift, size;
};

std::vector<Field> fields(std::uint32_t format, bool map) {
  switch (format) {
    case 5:
      return {{0, 32}, {5, 32}, {10, 32}};
    case 6:
      return map ? std::vector<Field>{{0, 32}, {6, 32}, {11, 32}} : std::vector<Field>{{0, 32}, {5, 64}, {11, 32}};
    case 7:
      return {{0, 256}, {8, 256}, {16, 256}};
    default:
      return {{0, 256}};
  }
}

std::uint32_t blend(std::uint32_t format, std::uint32_t s, std::uint32_t d, std::uint32_t weight, bool map) {
  if (map && weight == 255) return d;
  const auto mix = [&](std::uint32_t a, std::uint32_t b) {
    return map ? (a * (256 - weight) + b * weight) / 256 : ((255 - weight) * a + weight * b) / 255;
  };
  if (format == 0) return mix(s * 255, d * 255) >= 128;
  std::uint32_t out = 0;
  for (const Field& f : fields(format, map)) out += mix((s >> f.shift) % f.size, (d >> f.shift) % f.size) << f.shift;
  return out;
}

/// A source row with the packet of each pixel.
struct SourceRow {
  std::vector<std::uint32_t> values;
  std::vector<std::size_t> packetStart, packetEnd;

  SourceRow(const Bitmap& src, std::int64_t y, std::int64_t needed) {
    if ((src.format & 0x30) == 0) {
      for (std::int64_t x = 0; x < needed; ++x) values.push_back(pixelAt(src.pixels + y * src.pitch, src.format, x));
      return;
    }
    const std::uint8_t* p = src.pixels + src.rowTable[y];
    while (values.size() < static_cast<std::size_t>(needed)) {
      const int header = static_cast<signed char>(*p++);
      if (header == -128) continue;
      const int count = header < 0 ? 1 - header : header + 1;
      const std::size_t start = values.size();
      for (int i = 0; i < count; ++i) {
        values.push_back(pixelAt(p, src.format, header < 0 ? 0 : i));
        packetStart.push_back(start);
        packetEnd.push_back(start + static_cast<std::size_t>(count));
      }
      p += wholeBytes(src.format) * (header < 0 ? 1 : count);
    }
  }
};

/// Source columns or rows of each destination column or row, stepped as the rule says.
std::vector<std::int64_t> positions(std::int64_t from, std::int64_t to, bool stretch) {
  const std::int64_t step = stretch ? from * 65536 / to : 65536;
  std::vector<std::int64_t> out;
  std::int64_t at = 0, fraction = 0;
  for (std::int64_t i = 0; i < to; ++i) {
    out.push_back(at);
    fraction += step;
    at += fraction / 65536;
    fraction %= 65536;
  }
  return out;
}

}  // namespace

void referenceBlit(const BlitCall& c, const Bitmap& target, const ReferenceTarget& memory, std::size_t alphamapBytes,
                   std::size_t zmapBytes) {
  const Bitmap& src = *c.src;
  const std::uint32_t from = src.format & 15, to = target.format & 15;
  const bool packed = (src.format & 0x30) != 0;
  const std::vector<std::int64_t> columns = positions(c.stretch ? c.sw : c.dw, c.dw, c.stretch);
  const std::vector<std::int64_t> rows = positions(c.stretch ? c.sh : c.dh, c.dh, c.stretch);
  for (std::int64_t y = 0; y < c.dh; ++y) {
    const std::int64_t sy = c.sy + rows[static_cast<std::size_t>(y)];
    const SourceRow source(src, sy, c.sx + columns.back() + 1);
    std::int64_t count = c.dw;
    const auto firstPixel = static_cast<std::size_t>(c.sx);
    // Workers that walk packets themselves: same format, or palette into a format with whole pixels.
    if (packed && !c.stretch && to != 0 && (from == to || from == 4) && source.packetStart[firstPixel] < firstPixel)
      count = std::max(count, static_cast<std::int64_t>(source.packetEnd[firstPixel] - firstPixel));
    std::uint8_t* const row = memory.pixels + (c.dy + y) * target.pitch;
    for (std::int64_t x = 0; x < count; ++x) {
      const std::int64_t column = x < c.dw ? columns[static_cast<std::size_t>(x)] : x;
      const std::uint8_t* const depthEnd = memory.depths + memory.depthBytes;
      std::uint8_t* depth = c.depth == Depth::None ? nullptr : memory.depths + (c.dy + y) * c.zbuffer->pitch + c.dx + x;
      const std::int64_t mapX = c.sx + column;
      const auto mapOffset = [&](const Bitmap& map) { return static_cast<std::size_t>(sy * map.pitch + mapX); };
      if (x >= c.dw) {
        if ((row - memory.pixels) + (c.dx + x + 1) * wholeBytes(to) > static_cast<std::int64_t>(memory.bytes)) break;
        if (depth != nullptr && depth >= depthEnd) break;
        if (c.rule == Rule::Alphamap && mapOffset(*c.alphamap) >= alphamapBytes) break;
        if (c.depth == Depth::ZMap && mapOffset(*c.zmap) >= zmapBytes) break;
      }
      const std::uint32_t stored = source.values[static_cast<std::size_t>(c.sx + column)];
      if (c.transparent() && stored == 0) continue;
      if (depth != nullptr) {
        // The sum of a Z map wraps at 32 bits.
        const auto z =
            c.depth == Depth::ZMap
                ? static_cast<std::int32_t>(c.zmap->pixels[mapOffset(*c.zmap)] + static_cast<std::uint32_t>(c.zoffset))
                : c.z;
        if (z > *depth) continue;
        *depth = static_cast<std::uint8_t>(z);
      }
      std::uint32_t value = translate(src, stored, target);
      const std::uint32_t old = pixelAt(row, to, c.dx + x);
      if (c.constantAlpha()) value = blend(to, value, old, static_cast<std::uint32_t>(c.alpha), false);
      if (c.rule == Rule::Alphamap) value = blend(to, value, old, c.alphamap->pixels[mapOffset(*c.alphamap)], true);
      setPixelAt(row, to, c.dx + x, value);
    }
  }
}

}  // namespace kxtest
