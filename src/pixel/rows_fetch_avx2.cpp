// Fetching rows with AVX2: gathers whose columns lie close together, by one shuffle.
// SPDX-License-Identifier: MIT
#include <immintrin.h>

#include "pixel/memory.h"
#include "pixel/rows.h"

namespace kx {

namespace {

RowKernels base;

constexpr std::size_t step = 8;

/// Eight columns from a window of 16 bytes, wherever they fit into one.
template <std::size_t Bytes>
void gatherWindows(const GatherSpan& span) {
  constexpr std::uint32_t window = 16 / Bytes;
  GatherSpan row = span;
  if (row.count < step || row.columnLimit < window) return base.gather[Bytes - 1](row);
  // Columns that lie too far apart on the whole are not looked at one by one.
  if ((row.columns[row.count - 1] - row.columns[0]) / row.count >= window / step) return base.gather[Bytes - 1](row);
  while (row.count >= step) {
    // The window must not reach beyond what can be read.
    const std::uint32_t latest = row.columnLimit - window;
    const std::uint32_t first = row.columns[0] < latest ? row.columns[0] : latest;
    if (row.columns[step - 1] - first >= window) {
      base.gather[Bytes - 1]({row.dst, row.src, row.columns, step, row.columnLimit});
    } else {
      const auto load = [](const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); };
      const __m128i origin = _mm_set1_epi32(static_cast<int>(first));
      const __m128i low = _mm_sub_epi32(load(row.columns), origin), high = _mm_sub_epi32(load(row.columns + 4), origin);
      const __m128i places = _mm_packs_epi32(low, high);
      const __m128i pixels = load(row.src + first * Bytes);
      if constexpr (Bytes == 1) {
        _mm_storel_epi64(static_cast<__m128i*>(static_cast<void*>(row.dst)),
                         _mm_shuffle_epi8(pixels, _mm_packus_epi16(places, places)));
      } else {
        const __m128i bytes = _mm_or_si128(_mm_slli_epi16(places, 1), _mm_slli_epi16(places, 9));
        _mm_storeu_si128(static_cast<__m128i*>(static_cast<void*>(row.dst)),
                         _mm_shuffle_epi8(pixels, _mm_or_si128(bytes, _mm_set1_epi16(0x0100))));
      }
    }
    row.dst += step * Bytes;
    row.columns += step;
    row.count -= step;
  }
  base.gather[Bytes - 1](row);
}

}  // namespace

RowKernels improveFetchAvx2(RowKernels kernels) {
  base = kernels;
  kernels.gather[0] = gatherWindows<1>;
  kernels.gather[1] = gatherWindows<2>;
  return kernels;
}

}  // namespace kx
