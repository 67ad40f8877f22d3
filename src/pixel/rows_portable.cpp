// The row kernels in plain C++: the meaning that the vector kernels keep to.
// SPDX-License-Identifier: MIT
#include <cstring>
#include <type_traits>

#include "codec/short_copy.h"
#include "pixel/blend_rules.h"
#include "pixel/colour_blend.h"
#include "pixel/each_row.h"
#include "pixel/rows.h"

namespace kx {

namespace {

// The policies: which pixels are drawn, and with what value.

struct TestAll {
  static bool draws(const RowSpan&, std::size_t, std::uint32_t) { return true; }
};

struct TestKeyed {
  static bool draws(const RowSpan&, std::size_t, std::uint32_t source) { return !isKey(source); }
};

struct TestMasked {
  static bool draws(const RowSpan& span, std::size_t i, std::uint32_t) { return span.mask[i] != 0; }
};

struct RuleAlpha {
  static constexpr Combine combine = Combine::Alpha;
  template <typename Format>
  static std::uint32_t value(const RowSpan& span, std::size_t, std::uint32_t s, std::uint32_t d) {
    return blendAlpha<Format>(s, d, span.alpha);
  }
};

struct RuleAlphamap {
  static constexpr Combine combine = Combine::Alphamap;
  template <typename Format>
  static std::uint32_t value(const RowSpan& span, std::size_t i, std::uint32_t s, std::uint32_t d) {
    return blendAlphamap<Format>(s, d, span.map[i]);
  }
};

template <typename Rule, typename Test, typename Format>
void blendRows(const RowSpan& span) {
  eachRow<Rule::combine>(span, [](const RowSpan& row) {
    for (std::size_t i = 0; i < row.count; ++i) {
      const std::uint32_t s = loadPixel<Format::bytes>(row.src + i * Format::bytes);
      const std::uint32_t d = loadPixel<Format::bytes>(row.dst + i * Format::bytes);
      const std::uint32_t value = Rule::template value<Format>(row, i, s, d);
      storePixel<Format::bytes>(row.dst + i * Format::bytes, Test::draws(row, i, s) ? value : d);
    }
  });
}

template <typename Test, typename Format>
void copyRows(const RowSpan& span) {
  eachRow<Combine::Copy>(span, [](const RowSpan& row) {
    for (std::size_t i = 0; i < row.count; ++i) {
      const std::uint32_t s = loadPixel<Format::bytes>(row.src + i * Format::bytes);
      if (Test::draws(row, i, s)) storePixel<Format::bytes>(row.dst + i * Format::bytes, s);
    }
  });
}

template <typename Format>
void moveRows(const RowSpan& span) {
  const std::size_t bytes = span.count * Format::bytes;
  if (bytes == 0) return;
  eachRow<Combine::Copy>(span, [bytes](const RowSpan& row) { copyShort(row.dst, row.src, bytes); });
}

template <typename Format>
void blendColourArea(const ColourArea& given) {
  const ColourArea area = given;
  const ColourBlend<Format> blend(area.colour, area.alpha);
  for (std::size_t y = 0; y < area.rows; ++y) {
    std::uint8_t* const row = area.dst + static_cast<std::ptrdiff_t>(y) * area.pitch;
    for (std::size_t i = 0; i < area.count; ++i) {
      std::uint8_t* const pixel = row + i * Format::bytes;
      storePixel<Format::bytes>(pixel, blend(loadPixel<Format::bytes>(pixel)));
    }
  }
}

template <typename Format>
void fillFormat(RowKernels& kernels, RowFormat format) {
  kernels.of(Combine::Copy, RowTest::All, format) = moveRows<Format>;
  kernels.of(Combine::Copy, RowTest::Keyed, format) = copyRows<TestKeyed, Format>;
  kernels.of(Combine::Copy, RowTest::Masked, format) = copyRows<TestMasked, Format>;
  kernels.of(Combine::Alpha, RowTest::All, format) = blendRows<RuleAlpha, TestAll, Format>;
  kernels.of(Combine::Alpha, RowTest::Keyed, format) = blendRows<RuleAlpha, TestKeyed, Format>;
  kernels.of(Combine::Alpha, RowTest::Masked, format) = blendRows<RuleAlpha, TestMasked, Format>;
  kernels.of(Combine::Alphamap, RowTest::All, format) = blendRows<RuleAlphamap, TestAll, Format>;
  kernels.of(Combine::Alphamap, RowTest::Masked, format) = blendRows<RuleAlphamap, TestMasked, Format>;
  if constexpr (!std::is_same_v<Format, Mono>)
    kernels.blendColour[static_cast<std::size_t>(format)] = blendColourArea<Format>;
}

template <std::size_t Bytes>
void keyMaskRow(std::uint8_t* mask, const std::uint8_t* src, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) mask[i] = isKey(loadPixel<Bytes>(src + i * Bytes)) ? 0 : 0xFF;
}

void depthRow(const DepthSpan& span) {
  const DepthSpan row = span;
  for (std::size_t i = 0; i < row.count; ++i) {
    const std::int32_t z = row.zMap != nullptr ? mapDepth(row.zMap[i], row.z) : row.z;
    const bool passes = (!row.refine || row.mask[i] != 0) && depthPasses(z, row.zBuffer[i]);
    if (passes) row.zBuffer[i] = static_cast<std::uint8_t>(z);
    row.mask[i] = passes ? 0xFF : 0;
  }
}

/// Calls `put(i)` for all of a row, four at a time.
template <typename Put>
inline void forEachPixel(std::size_t count, Put put) {
  std::size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    put(i);
    put(i + 1);
    put(i + 2);
    put(i + 3);
  }
  for (; i < count; ++i) put(i);
}

template <std::size_t Bytes>
void prepareTable(LookupTable& table, const std::uint8_t* entries) {
  table.entries = entries;
  if constexpr (Bytes == 3)
    for (std::size_t i = 0; i < 256; ++i) store32(table.made + 4 * i, load24(entries + 3 * i));
}

/// Pixels of 24 bits are stored as four bytes, the fourth of which the next pixel sets right.
template <std::size_t Bytes>
void lookupRow(std::uint8_t* dst, const std::uint8_t* src, const LookupTable& table, std::size_t count) {
  if constexpr (Bytes == 3) {
    if (count == 0) return;
    const std::size_t last = count - 1;
    forEachPixel(last, [&](std::size_t i) { store32(dst + 3 * i, load32(table.made + 4 * src[i])); });
    store24(dst + 3 * last, load32(table.made + 4 * src[last]));
  } else {
    const std::uint8_t* const entries = table.entries;
    forEachPixel(
        count, [=](std::size_t i) { storePixel<Bytes>(dst + i * Bytes, loadPixel<Bytes>(entries + src[i] * Bytes)); });
  }
}

template <std::size_t Bytes>
void lookupKeyedRow(std::uint8_t* dst, const std::uint8_t* src, const LookupTable& table, std::size_t count) {
  const auto entry = [&](std::size_t i) {
    return Bytes == 3 ? load32(table.made + 4 * src[i]) : loadPixel<Bytes>(table.entries + src[i] * Bytes);
  };
  for (std::size_t i = 0; i < count; ++i)
    if (!isKey(src[i])) storePixel<Bytes>(dst + i * Bytes, entry(i));
}

void useColumns(GatherColumns&) {}

/// Of 24 bits as in a lookup; four bytes can be loaded from all columns but the last.
template <std::size_t Bytes>
void gatherRow(std::uint8_t* dst, const std::uint8_t* src, const GatherColumns& columns) {
  const std::uint32_t* const column = columns.column;
  std::size_t done = 0;
  if constexpr (Bytes == 3) {
    done = columns.count == 0 ? 0 : columns.count - 1;
    while (done > 0 && column[done - 1] + 1 >= columns.limit) --done;
    forEachPixel(done, [=](std::size_t i) { store32(dst + i * 3, load32(src + std::size_t{column[i]} * 3)); });
  }
  forEachPixel(columns.count - done, [=](std::size_t i) {
    storePixel<Bytes>(dst + (done + i) * Bytes, loadPixel<Bytes>(src + column[done + i] * Bytes));
  });
}

template <std::size_t Bytes>
void fillSize(RowKernels& kernels) {
  constexpr std::size_t at = Bytes - 1;
  kernels.keyMask[at] = keyMaskRow<Bytes>;
  kernels.prepareLookup[at] = prepareTable<Bytes>;
  kernels.lookup[at] = lookupRow<Bytes>;
  kernels.lookupKeyed[at] = lookupKeyedRow<Bytes>;
  kernels.prepareColumns[at] = useColumns;
  kernels.gather[at] = gatherRow<Bytes>;
}

void readBitsRow(std::uint8_t* dst, const std::uint8_t* row, std::size_t first, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) dst[i] = row[(first + i) / 8] >> (7 - (first + i) % 8) & 1;
}

void writeBitsRow(std::uint8_t* row, std::size_t first, const std::uint8_t* src, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    std::uint8_t& byte = row[(first + i) / 8];
    const std::size_t shift = 7 - (first + i) % 8;
    byte = static_cast<std::uint8_t>((byte & ~(1u << shift)) | static_cast<unsigned>(src[i]) << shift);
  }
}

}  // namespace

RowKernels portableRows() {
  RowKernels kernels{};
  fillFormat<Mono>(kernels, RowFormat::Mono);
  fillFormat<Grey8>(kernels, RowFormat::Grey8);
  fillFormat<Rgb555>(kernels, RowFormat::Rgb555);
  fillFormat<Rgb565>(kernels, RowFormat::Rgb565);
  fillFormat<Bgr24>(kernels, RowFormat::Bgr24);
  fillSize<1>(kernels);
  fillSize<2>(kernels);
  fillSize<3>(kernels);
  kernels.depth = depthRow;
  kernels.readBits = readBitsRow;
  kernels.writeBits = writeBitsRow;
  return kernels;
}

}  // namespace kx
