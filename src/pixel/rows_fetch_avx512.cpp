// Fetching rows with AVX-512: table lookups and close gathers by permutations of bytes.
// SPDX-License-Identifier: MIT
#if defined(__GNUC__) && !defined(__clang__)
// The compiler's own header starts permutations from a register it never sets.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#pragma GCC diagnostic ignored "-Wuninitialized"
#endif
#include <immintrin.h>

#include "pixel/rows.h"

namespace kx {

namespace {

RowKernels base;

constexpr std::size_t registerBytes = 64;

/// The lowest `count` bits; all of them from 64 on.
inline __mmask64 lowest(std::uint64_t count) { return count >= 64 ? ~__mmask64{0} : (__mmask64{1} << count) - 1; }

/// Byte numbers of interleaved elements: of each byte of three registers its element and its place in it.
struct Interleaving {
  std::uint8_t element[3 * registerBytes], blueOrGreen[3 * registerBytes], place[3 * registerBytes];

  constexpr Interleaving() : element(), blueOrGreen(), place() {
    for (std::size_t j = 0; j < sizeof element; ++j) {
      element[j] = static_cast<std::uint8_t>(j / 3);
      place[j] = static_cast<std::uint8_t>(j % 3);
      blueOrGreen[j] = static_cast<std::uint8_t>(j / 3 + (j % 3 == 1 ? 64 : 0));
    }
  }
};
constexpr Interleaving interleaving;

inline __m512i byteNumbers() {
  alignas(64) static constexpr struct Numbers {
    std::uint8_t value[registerBytes];
    constexpr Numbers() : value() {
      for (std::size_t i = 0; i < registerBytes; ++i) value[i] = static_cast<std::uint8_t>(i);
    }
  } numbers;
  return _mm512_load_si512(numbers.value);
}

/// One byte of each of 256 table elements.
struct BytePlane {
  __m512i quarter[4];

  [[nodiscard]] __m512i at(__m512i index) const {
    const __m512i low = _mm512_permutex2var_epi8(quarter[0], index, quarter[1]);
    const __m512i high = _mm512_permutex2var_epi8(quarter[2], index, quarter[3]);
    return _mm512_mask_blend_epi8(_mm512_movepi8_mask(index), low, high);
  }
};

/// Byte `place` of all elements of a table.
template <std::size_t Bytes>
BytePlane loadPlane(const std::uint8_t* table, std::size_t place) {
  BytePlane plane;
  const __m512i number = byteNumbers();
  const __m512i offset = _mm512_set1_epi8(static_cast<char>(place));
  for (std::size_t q = 0; q < 4; ++q) {
    const std::uint8_t* p = table + q * registerBytes * Bytes;
    if constexpr (Bytes == 1) plane.quarter[q] = _mm512_loadu_si512(p);
    if constexpr (Bytes == 2) {
      const __m512i from = _mm512_add_epi8(_mm512_add_epi8(number, number), offset);
      plane.quarter[q] = _mm512_permutex2var_epi8(_mm512_loadu_si512(p), from, _mm512_loadu_si512(p + registerBytes));
    }
    if constexpr (Bytes == 3) {
      const __m512i from = _mm512_add_epi8(_mm512_add_epi8(number, number), _mm512_add_epi8(number, offset));
      const __m512i early =
          _mm512_permutex2var_epi8(_mm512_loadu_si512(p), from, _mm512_loadu_si512(p + registerBytes));
      plane.quarter[q] = _mm512_mask_permutexvar_epi8(early, _mm512_movepi8_mask(from), from,
                                                      _mm512_loadu_si512(p + 2 * registerBytes));
    }
  }
  return plane;
}

/// Stores what belongs to the first `bytes` bytes of a register, `skip` bytes into them.
inline void storePart(std::uint8_t* dst, std::size_t skip, std::size_t bytes, __m512i value) {
  if (bytes > skip) _mm512_mask_storeu_epi8(dst + skip, lowest(bytes - skip), value);
}

template <std::size_t Bytes>
void lookupPlanes(std::uint8_t* dst, const std::uint8_t* src, const std::uint8_t* table, std::size_t count) {
  // Splitting the table pays from here on.
  constexpr std::size_t shortest = 32;
  if (count < shortest) return base.lookup[Bytes - 1](dst, src, table, count);
  BytePlane planes[Bytes];
  for (std::size_t place = 0; place < Bytes; ++place) planes[place] = loadPlane<Bytes>(table, place);
  for (std::size_t i = 0; i < count; i += registerBytes) {
    const std::size_t left = count - i < registerBytes ? count - i : registerBytes;
    const __m512i index = _mm512_maskz_loadu_epi8(lowest(left), src + i);
    std::uint8_t* out = dst + i * Bytes;
    if constexpr (Bytes == 1) storePart(out, 0, left, planes[0].at(index));
    if constexpr (Bytes == 2) {
      // In this order unpacking within groups of 16 bytes gives the order of memory.
      const __m512i spread = _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 4, 1, 5, 2, 6, 3, 7), index);
      const __m512i low = planes[0].at(spread), high = planes[1].at(spread);
      storePart(out, 0, 2 * left, _mm512_unpacklo_epi8(low, high));
      storePart(out, registerBytes, 2 * left, _mm512_unpackhi_epi8(low, high));
    }
    if constexpr (Bytes == 3) {
      const __m512i blue = planes[0].at(index), green = planes[1].at(index), red = planes[2].at(index);
      for (std::size_t part = 0; part < 3 * registerBytes; part += registerBytes) {
        const __m512i two = _mm512_permutex2var_epi8(blue, _mm512_loadu_si512(interleaving.blueOrGreen + part), green);
        const __mmask64 isRed =
            _mm512_cmpeq_epi8_mask(_mm512_loadu_si512(interleaving.place + part), _mm512_set1_epi8(2));
        const __m512i element = _mm512_loadu_si512(interleaving.element + part);
        storePart(out, part, 3 * left, _mm512_mask_permutexvar_epi8(two, isRed, element, red));
      }
    }
  }
}

/// Sixteen columns from a window of 128 bytes, wherever they fit into one.
template <std::size_t Bytes>
void gatherWindows(const GatherSpan& span) {
  constexpr std::size_t step = 16;
  constexpr std::uint32_t window = 2 * registerBytes / Bytes;
  GatherSpan row = span;
  // Columns that lie too far apart on the whole are not looked at one by one.
  if (row.count < step || (row.columns[row.count - 1] - row.columns[0]) / row.count >= window / step)
    return base.gather[Bytes - 1](row);
  while (row.count >= step) {
    const std::uint32_t first = row.columns[0];
    if (row.columns[step - 1] - first >= window) {
      base.gather[Bytes - 1]({row.dst, row.src, row.columns, step, row.columnLimit});
    } else {
      const __m512i places =
          _mm512_sub_epi32(_mm512_loadu_si512(row.columns), _mm512_set1_epi32(static_cast<int>(first)));
      const std::uint8_t* p = row.src + std::size_t{first} * Bytes;
      const std::uint64_t readable = std::uint64_t{row.columnLimit - first} * Bytes;
      const __m512i low = _mm512_maskz_loadu_epi8(lowest(readable), p);
      const __m512i high = readable > registerBytes
                               ? _mm512_maskz_loadu_epi8(lowest(readable - registerBytes), p + registerBytes)
                               : _mm512_setzero_si512();
      if constexpr (Bytes == 2) {
        const __m512i from = _mm512_castsi256_si512(_mm512_cvtepi32_epi16(places));
        const __m512i out = _mm512_permutex2var_epi16(low, from, high);
        _mm256_storeu_si256(static_cast<__m256i*>(static_cast<void*>(row.dst)), _mm512_castsi512_si256(out));
      } else {
        __m512i from = _mm512_castsi128_si512(_mm512_cvtepi32_epi8(places));
        if constexpr (Bytes == 3) {
          from = _mm512_permutexvar_epi8(_mm512_loadu_si512(interleaving.element), from);
          from = _mm512_add_epi8(_mm512_add_epi8(from, from),
                                 _mm512_add_epi8(from, _mm512_loadu_si512(interleaving.place)));
        }
        _mm512_mask_storeu_epi8(row.dst, lowest(step * Bytes), _mm512_permutex2var_epi8(low, from, high));
      }
    }
    row.dst += step * Bytes;
    row.columns += step;
    row.count -= step;
  }
  base.gather[Bytes - 1](row);
}

}  // namespace

RowKernels improveFetchAvx512(RowKernels kernels) {
  base = kernels;
  kernels.lookup[0] = lookupPlanes<1>;
  kernels.lookup[1] = lookupPlanes<2>;
  kernels.lookup[2] = lookupPlanes<3>;
  kernels.gather[0] = gatherWindows<1>;
  kernels.gather[1] = gatherWindows<2>;
  kernels.gather[2] = gatherWindows<3>;
  return kernels;
}

}  // namespace kx
