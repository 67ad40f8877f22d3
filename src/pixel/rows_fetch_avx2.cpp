// Fetching rows with AVX2: gathers whose columns lie close together, by one shuffle.
// SPDX-License-Identifier: MIT
#include <immintrin.h>

#include "pixel/blend_rules.h"
#include "pixel/rows.h"

namespace kx {

namespace {

RowKernels base;

constexpr std::size_t step = 8;

/// Eight columns from a window of 16 bytes, wherever they fit into one.
template <std::size_t Bytes>
void gatherWindows(std::uint8_t* dst, const std::uint8_t* src, const GatherColumns& columns) {
  constexpr std::uint32_t window = 16 / Bytes;
  const std::uint32_t* const column = columns.column;
  // Columns that lie too far apart on the whole are not looked at one by one.
  if (columns.count < step || columns.limit < window ||
      (column[columns.count - 1] - column[0]) / columns.count >= window / step)
    return base.gather[Bytes - 1](dst, src, columns);
  const auto gatherStep = [&](std::size_t i) {
    // The window must not reach beyond what can be read.
    const std::uint32_t latest = columns.limit - window;
    const std::uint32_t first = column[i] < latest ? column[i] : latest;
    if (column[i + step - 1] - first >= window) {
      for (std::size_t j = i; j < i + step; ++j)
        storePixel<Bytes>(dst + j * Bytes, loadPixel<Bytes>(src + column[j] * Bytes));
    } else {
      const auto load = [](const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); };
      const __m128i origin = _mm_set1_epi32(static_cast<int>(first));
      const __m128i low = _mm_sub_epi32(load(column + i), origin), high = _mm_sub_epi32(load(column + i + 4), origin);
      const __m128i places = _mm_packs_epi32(low, high);
      const __m128i pixels = load(src + first * Bytes);
      if constexpr (Bytes == 1) {
        _mm_storel_epi64(static_cast<__m128i*>(static_cast<void*>(dst + i * Bytes)),
                         _mm_shuffle_epi8(pixels, _mm_packus_epi16(places, places)));
      } else {
        const __m128i bytes = _mm_or_si128(_mm_slli_epi16(places, 1), _mm_slli_epi16(places, 9));
        _mm_storeu_si128(static_cast<__m128i*>(static_cast<void*>(dst + i * Bytes)),
                         _mm_shuffle_epi8(pixels, _mm_or_si128(bytes, _mm_set1_epi16(0x0100))));
      }
    }
  };
  // The last step may overlap the one before.
  for (std::size_t i = 0; i + step < columns.count; i += step) gatherStep(i);
  gatherStep(columns.count - step);
}

}  // namespace

RowKernels improveFetchAvx2(RowKernels kernels) {
  base = kernels;
  kernels.gather[0] = gatherWindows<1>;
  kernels.gather[1] = gatherWindows<2>;
  return kernels;
}

}  // namespace kx
