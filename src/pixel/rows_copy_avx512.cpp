// Copies with AVX-512: ends of rows and pixels that stay are left out by masked stores, and not even read.
// SPDX-License-Identifier: MIT
#include "pixel/avx512.h"
#include "pixel/each_row.h"

namespace kx {

namespace {

/// What the level below chose: it does long copies.
RowKernels base;

/// Pixels that a register holds whole.
template <std::size_t Bytes>
constexpr std::size_t pixelsAtOnce = registerBytes / Bytes;

/// Lanes to store, of 16 bits for 16-bit pixels and of a byte for the others.
template <std::size_t Bytes>
void storeLanes(std::uint8_t* dst, std::uint64_t lanes, __m512i value) {
  if constexpr (Bytes == 2)
    _mm512_mask_storeu_epi16(dst, static_cast<__mmask32>(lanes), value);
  else
    _mm512_mask_storeu_epi8(dst, lanes, value);
}

/// Lanes of the pixels of a value other than 0.
template <std::size_t Bytes>
std::uint64_t keyedLanes(__m512i s) {
  if constexpr (Bytes == 1) return _mm512_test_epi8_mask(s, s);
  if constexpr (Bytes == 2) return _mm512_test_epi16_mask(s, s);
  constexpr std::uint64_t firstOfPixel = 0x1249249249249249;
  const std::uint64_t zero = _mm512_testn_epi8_mask(s, s);
  const std::uint64_t kept = zero & zero >> 1 & zero >> 2 & firstOfPixel;
  return ~(kept * 7) & lowest(pixelsAtOnce<3> * 3);
}

/// Lanes of the pixels that a mask names.
template <std::size_t Bytes>
std::uint64_t namedLanes(const std::uint8_t* mask, std::size_t pixels) {
  const __m512i named = _mm512_maskz_loadu_epi8(lowest(pixels), mask);
  const std::uint64_t drawn = _mm512_test_epi8_mask(named, named);
  if constexpr (Bytes != 3) return drawn;
  const __m512i spread = _mm512_permutexvar_epi8(_mm512_loadu_si512(interleaving.element), named);
  // The byte behind the last whole pixel is not of this step.
  return _mm512_test_epi8_mask(spread, spread) & lowest(pixelsAtOnce<3> * 3);
}

template <std::size_t Bytes, RowTest Test>
void copySome(const RowSpan& span) {
  if (span.count == 0) return;
  constexpr std::size_t step = pixelsAtOnce<Bytes>;
  // The last step is never empty. What it does not load is 0: left out.
  const std::size_t fullSteps = (span.count - 1) / step, last = span.count - fullSteps * step;
  const __mmask64 lastBytes = lowest(last * Bytes);
  eachRow<Combine::Copy>(span, [=](RowSpan row) {
    const auto store = [&](__m512i s, std::size_t pixels) {
      const std::uint64_t lanes = Test == RowTest::Keyed ? keyedLanes<Bytes>(s) : namedLanes<Bytes>(row.mask, pixels);
      storeLanes<Bytes>(row.dst, lanes, s);
    };
    for (std::size_t i = 0; i < fullSteps; ++i) {
      store(_mm512_maskz_loadu_epi8(lowest(step * Bytes), row.src), step);
      row.dst += step * Bytes;
      row.src += step * Bytes;
      if constexpr (Test == RowTest::Masked) row.mask += step;
    }
    store(_mm512_maskz_loadu_epi8(lastBytes, row.src), last);
  });
}

template <RowFormat Format>
void copyAll(const RowSpan& span) {
  const std::size_t bytes = span.count * pixelBytes<Format>;
  if (bytes == 0) return;
  if (bytes >= longestCopy) return base.of(Combine::Copy, RowTest::All, Format)(span);
  const std::size_t fullSteps = (bytes - 1) / registerBytes;
  const __mmask64 lastBytes = lowest(bytes - fullSteps * registerBytes);
  eachRow<Combine::Copy>(span, [=](RowSpan row) {
    for (std::size_t i = 0; i < fullSteps; ++i) {
      _mm512_storeu_si512(row.dst, _mm512_loadu_si512(row.src));
      row.dst += registerBytes;
      row.src += registerBytes;
    }
    _mm512_mask_storeu_epi8(row.dst, lastBytes, _mm512_maskz_loadu_epi8(lastBytes, row.src));
  });
}

template <RowFormat Format>
void improve(RowKernels& kernels) {
  constexpr std::size_t bytes = pixelBytes<Format>;
  kernels.of(Combine::Copy, RowTest::All, Format) = copyAll<Format>;
  kernels.of(Combine::Copy, RowTest::Keyed, Format) = copySome<bytes, RowTest::Keyed>;
  kernels.of(Combine::Copy, RowTest::Masked, Format) = copySome<bytes, RowTest::Masked>;
}

}  // namespace

RowKernels improveCopiesAvx512(RowKernels kernels) {
  base = kernels;
  improve<RowFormat::Grey8>(kernels);
  improve<RowFormat::Rgb555>(kernels);
  improve<RowFormat::Rgb565>(kernels);
  improve<RowFormat::Bgr24>(kernels);
  return kernels;
}

}  // namespace kx
