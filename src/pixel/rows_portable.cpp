// The row kernels in plain C++: the meaning that the vector kernels keep to.
// SPDX-License-Identifier: MIT
#include <cstring>

#include "pixel/blend_rules.h"
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
  template <typename Format>
  static std::uint32_t value(const RowSpan& span, std::size_t, std::uint32_t s, std::uint32_t d) {
    return blendAlpha<Format>(s, d, span.alpha);
  }
};

struct RuleAlphamap {
  template <typename Format>
  static std::uint32_t value(const RowSpan& span, std::size_t i, std::uint32_t s, std::uint32_t d) {
    return blendAlphamap<Format>(s, d, span.map[i]);
  }
};

template <typename Rule, typename Test, typename Format>
void blendRow(const RowSpan& span) {
  const RowSpan row = span;
  for (std::size_t i = 0; i < row.count; ++i) {
    const std::uint32_t s = loadPixel<Format::bytes>(row.src + i * Format::bytes);
    const std::uint32_t d = loadPixel<Format::bytes>(row.dst + i * Format::bytes);
    const std::uint32_t value = Rule::template value<Format>(row, i, s, d);
    storePixel<Format::bytes>(row.dst + i * Format::bytes, Test::draws(row, i, s) ? value : d);
  }
}

template <typename Test, typename Format>
void copyRow(const RowSpan& span) {
  const RowSpan row = span;
  for (std::size_t i = 0; i < row.count; ++i) {
    const std::uint32_t s = loadPixel<Format::bytes>(row.src + i * Format::bytes);
    if (Test::draws(row, i, s)) storePixel<Format::bytes>(row.dst + i * Format::bytes, s);
  }
}

template <typename Format>
void moveRow(const RowSpan& span) {
  std::memmove(span.dst, span.src, span.count * Format::bytes);
}

template <typename Format>
void fillFormat(RowKernels& kernels, RowFormat format) {
  kernels.of(Combine::Copy, RowTest::All, format) = moveRow<Format>;
  kernels.of(Combine::Copy, RowTest::Keyed, format) = copyRow<TestKeyed, Format>;
  kernels.of(Combine::Copy, RowTest::Masked, format) = copyRow<TestMasked, Format>;
  kernels.of(Combine::Alpha, RowTest::All, format) = blendRow<RuleAlpha, TestAll, Format>;
  kernels.of(Combine::Alpha, RowTest::Keyed, format) = blendRow<RuleAlpha, TestKeyed, Format>;
  kernels.of(Combine::Alpha, RowTest::Masked, format) = blendRow<RuleAlpha, TestMasked, Format>;
  kernels.of(Combine::Alphamap, RowTest::All, format) = blendRow<RuleAlphamap, TestAll, Format>;
  kernels.of(Combine::Alphamap, RowTest::Masked, format) = blendRow<RuleAlphamap, TestMasked, Format>;
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

/// Rows of 24 bits of which all but the last pixel may be written as four bytes, as the next pixel sets the fourth
/// right.
template <typename Load>
void storeOverlapping(std::uint8_t* dst, std::size_t count, Load load) {
  if (count == 0) return;
  for (std::size_t i = 0; i + 1 < count; ++i) store32(dst + i * 3, load(i));
  store24(dst + (count - 1) * 3, load(count - 1));
}

void useTable(LookupTable& table, const std::uint8_t* entries) { table.entries = entries; }

template <std::size_t Bytes>
void lookupRow(std::uint8_t* dst, const std::uint8_t* src, const LookupTable& table, std::size_t count) {
  const std::uint8_t* const entries = table.entries;
  if constexpr (Bytes == 3) {
    // Four bytes from the entry on, for the last entry from the one before on.
    storeOverlapping(dst, count, [=](std::size_t i) {
      const std::size_t back = src[i] == 255;
      return load32(entries + src[i] * Bytes - back) >> (8 * back);
    });
    return;
  }
  for (std::size_t i = 0; i < count; ++i)
    storePixel<Bytes>(dst + i * Bytes, loadPixel<Bytes>(entries + src[i] * Bytes));
}

template <std::size_t Bytes>
void lookupKeyedRow(std::uint8_t* dst, const std::uint8_t* src, const LookupTable& table, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i)
    if (!isKey(src[i])) storePixel<Bytes>(dst + i * Bytes, loadPixel<Bytes>(table.entries + src[i] * Bytes));
}

void useColumns(GatherColumns&) {}

template <std::size_t Bytes>
void gatherRow(std::uint8_t* dst, const std::uint8_t* src, const GatherColumns& columns) {
  const auto load = [&](std::size_t i) { return loadPixel<Bytes>(src + columns.column[i] * Bytes); };
  if constexpr (Bytes == 3) return storeOverlapping(dst, columns.count, load);
  for (std::size_t i = 0; i < columns.count; ++i) storePixel<Bytes>(dst + i * Bytes, load(i));
}

template <std::size_t Bytes>
void fillSize(RowKernels& kernels) {
  constexpr std::size_t at = Bytes - 1;
  kernels.keyMask[at] = keyMaskRow<Bytes>;
  kernels.prepareLookup[at] = useTable;
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
