// The loop over the rows of a combining kernel. Internal linkage, for kernels of every instruction set.
// SPDX-License-Identifier: MIT
#pragma once

#include "pixel/rows.h"

namespace kx {

namespace {

/// Rows of this many bytes and more are copied by the C library, which knows the caches.
constexpr std::size_t longestCopy = 512;

/// `draw(row)` for each row of a span. What does not change from row to row is better worked out before.
///
/// The members are copied one by one, and the copy is handed to nobody: copied as a block they would be read before
/// their parts, just written by the caller, have reached memory.
template <Combine Rule, typename Draw>
[[gnu::always_inline]] inline void eachRow(const RowSpan& span, Draw draw) {
  RowSpan row{span.dst, span.src, span.count, span.mask, span.map, span.alpha};
  const std::ptrdiff_t dstPitch = span.dstPitch, srcPitch = span.srcPitch, mapPitch = span.mapPitch;
  for (std::size_t left = span.rows; left != 0; --left) {
    draw(row);
    row.dst += dstPitch;
    row.src += srcPitch;
    if constexpr (Rule == Combine::Alphamap) row.map += mapPitch;
  }
}

}  // namespace

}  // namespace kx
