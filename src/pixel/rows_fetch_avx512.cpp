// Fetching rows with AVX-512: palette lookups and stretched rows by permutations of bytes, their numbers made ready
// once for all rows.
// SPDX-License-Identifier: MIT
#include "pixel/avx512.h"
#include "pixel/rows.h"

namespace kx {

namespace {

RowKernels base;

inline __m512i byteNumbers() {
  alignas(64) static constexpr struct Numbers {
    std::uint8_t value[registerBytes];
    constexpr Numbers() : value() {
      for (std::size_t i = 0; i < registerBytes; ++i) value[i] = static_cast<std::uint8_t>(i);
    }
  } numbers;
  return _mm512_load_si512(numbers.value);
}

BytePlane loadPlane(const std::uint8_t* bytes) {
  BytePlane plane;
  for (std::size_t q = 0; q < 4; ++q) plane.quarter[q] = _mm512_loadu_si512(bytes + q * registerBytes);
  return plane;
}

/// Splits a table into planes: all first bytes of its elements, all second ones, all third ones.
template <std::size_t Bytes>
void splitTable(LookupTable& table, const std::uint8_t* entries) {
  table.entries = entries;
  const __m512i number = byteNumbers();
  for (std::size_t place = 0; place < Bytes; ++place)
    for (std::size_t q = 0; q < 4; ++q) {
      const std::uint8_t* p = entries + q * registerBytes * Bytes;
      const __m512i offset = _mm512_set1_epi8(static_cast<char>(place));
      __m512i part = _mm512_loadu_si512(p);
      if constexpr (Bytes == 2) {
        const __m512i from = _mm512_add_epi8(_mm512_add_epi8(number, number), offset);
        part = _mm512_permutex2var_epi8(part, from, _mm512_loadu_si512(p + registerBytes));
      }
      if constexpr (Bytes == 3) {
        const __m512i from = _mm512_add_epi8(_mm512_add_epi8(number, number), _mm512_add_epi8(number, offset));
        part = _mm512_permutex2var_epi8(part, from, _mm512_loadu_si512(p + registerBytes));
        part = _mm512_mask_permutexvar_epi8(part, _mm512_movepi8_mask(from), from,
                                            _mm512_loadu_si512(p + 2 * registerBytes));
      }
      _mm512_storeu_si512(table.made + (4 * place + q) * registerBytes, part);
    }
}

template <std::size_t Bytes, bool Keyed>
void lookupPlanes(std::uint8_t* dst, const std::uint8_t* src, const LookupTable& table, std::size_t count) {
  BytePlane planes[Bytes];
  for (std::size_t place = 0; place < Bytes; ++place) planes[place] = loadPlane(table.made + 4 * place * registerBytes);
  for (std::size_t i = 0; i < count; i += registerBytes) {
    const std::size_t left = count - i;
    const __mmask64 inside = lowest(left);
    const __m512i index = _mm512_maskz_loadu_epi8(inside, src + i);
    // Bytes not loaded count as keyed.
    const __mmask64 drawn = Keyed ? _mm512_test_epi8_mask(index, index) : inside;
    if (Keyed && drawn == 0) continue;
    std::uint8_t* out = dst + i * Bytes;
    if constexpr (Bytes == 1) _mm512_mask_storeu_epi8(out, drawn, planes[0].at(index));
    if constexpr (Bytes == 2) {
      // In this order unpacking within groups of 16 bytes gives the order of memory.
      const __m512i spread = _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 4, 1, 5, 2, 6, 3, 7), index);
      const __m512i low = planes[0].at(spread), high = planes[1].at(spread);
      _mm512_mask_storeu_epi16(out, static_cast<__mmask32>(drawn), _mm512_unpacklo_epi8(low, high));
      _mm512_mask_storeu_epi16(out + registerBytes, static_cast<__mmask32>(drawn >> 32),
                               _mm512_unpackhi_epi8(low, high));
    }
    if constexpr (Bytes == 3) {
      const __m512i blue = planes[0].at(index), green = planes[1].at(index), red = planes[2].at(index);
      for (std::size_t part = 0; part < 3; ++part) {
        const std::size_t skip = part * registerBytes;
        const __m512i element = _mm512_loadu_si512(interleaving.element + skip);
        const __m512i two = _mm512_permutex2var_epi8(blue, _mm512_loadu_si512(interleaving.blueOrGreen + skip), green);
        constexpr std::uint64_t thirds[] = {0x4924924924924924, 0x2492492492492492, 0x9249249249249249};
        const __m512i value = _mm512_mask_permutexvar_epi8(two, thirds[part], element, red);
        if constexpr (Keyed) {
          const __m512i wanted = _mm512_permutexvar_epi8(element, _mm512_movm_epi8(drawn));
          _mm512_mask_storeu_epi8(out + skip, _mm512_movepi8_mask(wanted), value);
        } else {
          storePart(out, skip, left * Bytes, value);
        }
      }
    }
  }
}

// ---- Stretched rows: each 64 bytes of the strip come from a window of at most 256 bytes of the source row.

template <std::size_t Bytes>
void prepareWindows(GatherColumns& columns) {
  columns.windowParts = 0;
  const std::size_t bytes = columns.count * Bytes;
  if (columns.count < 16) return;
  std::size_t widest = 0;
  std::size_t block = 0;
  columns.fullBlocks = 0;
  for (std::size_t at = 0; at < bytes; at += registerBytes, ++block) {
    const std::size_t last = (at + registerBytes < bytes ? at + registerBytes : bytes) - 1;
    const std::size_t from = columns.column[at / Bytes] * Bytes;
    const std::size_t width = columns.column[last / Bytes] * Bytes + Bytes - from;
    if (width > 4 * registerBytes) return;
    widest = width > widest ? width : widest;
    columns.blockFrom[block] = static_cast<std::uint32_t>(from);
    for (std::size_t j = at; j <= last; ++j)
      columns.places[j] = static_cast<std::uint8_t>(columns.column[j / Bytes] * Bytes + j % Bytes - from);
  }
  columns.windowParts = widest <= registerBytes ? 1 : widest <= 2 * registerBytes ? 2 : 4;
  // Blocks whose whole windows can be read, and which are whole themselves.
  const std::uint64_t readable = std::uint64_t{columns.limit} * Bytes;
  while (columns.fullBlocks < bytes / registerBytes &&
         columns.blockFrom[columns.fullBlocks] + std::uint64_t{columns.windowParts} * registerBytes <= readable)
    ++columns.fullBlocks;
}

/// The bytes that `places` names in a window of Parts registers.
template <unsigned Parts>
__m512i fromWindow(const std::uint8_t* window, __m512i places) {
  const __m512i first = _mm512_loadu_si512(window);
  if constexpr (Parts == 1) return _mm512_permutexvar_epi8(places, first);
  if constexpr (Parts == 2) return _mm512_permutex2var_epi8(first, places, _mm512_loadu_si512(window + registerBytes));
  return loadPlane(window).at(places);
}

template <unsigned Parts>
void gatherBlocks(std::uint8_t* dst, const std::uint8_t* src, const GatherColumns& columns) {
  for (std::size_t block = 0; block < columns.fullBlocks; ++block) {
    const std::size_t at = block * registerBytes;
    const __m512i places = _mm512_loadu_si512(columns.places + at);
    _mm512_storeu_si512(dst + at, fromWindow<Parts>(src + columns.blockFrom[block], places));
  }
}

template <std::size_t Bytes>
void gatherWindows(std::uint8_t* dst, const std::uint8_t* src, const GatherColumns& columns) {
  switch (columns.windowParts) {
    case 1:
      gatherBlocks<1>(dst, src, columns);
      break;
    case 2:
      gatherBlocks<2>(dst, src, columns);
      break;
    case 4:
      gatherBlocks<4>(dst, src, columns);
      break;
    default:
      return base.gather[Bytes - 1](dst, src, columns);
  }
  const std::size_t bytes = columns.count * Bytes;
  for (std::size_t block = columns.fullBlocks; block * registerBytes < bytes; ++block) {
    const std::size_t from = columns.blockFrom[block], readable = columns.limit * Bytes - from;
    BytePlane window;
    for (std::size_t q = 0; q < 4; ++q) {
      const std::size_t skip = q * registerBytes;
      const __mmask64 inside = readable > skip ? lowest(readable - skip) : 0;
      window.quarter[q] = _mm512_maskz_loadu_epi8(inside, src + from + skip);
    }
    const __m512i places = _mm512_loadu_si512(columns.places + block * registerBytes);
    storePart(dst, block * registerBytes, bytes, window.at(places));
  }
}

template <std::size_t Bytes>
void improve(RowKernels& kernels) {
  kernels.prepareLookup[Bytes - 1] = splitTable<Bytes>;
  kernels.lookup[Bytes - 1] = lookupPlanes<Bytes, false>;
  kernels.lookupKeyed[Bytes - 1] = lookupPlanes<Bytes, true>;
  kernels.prepareColumns[Bytes - 1] = prepareWindows<Bytes>;
  kernels.gather[Bytes - 1] = gatherWindows<Bytes>;
}

}  // namespace

RowKernels improveFetchAvx512(RowKernels kernels) {
  base = kernels;
  improve<1>(kernels);
  improve<2>(kernels);
  improve<3>(kernels);
  return kernels;
}

}  // namespace kx
