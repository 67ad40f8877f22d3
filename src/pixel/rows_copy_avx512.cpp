// Copies of some pixels of a row with AVX-512: by masked stores, so that pixels which stay are not even read.
// SPDX-License-Identifier: MIT
#include "pixel/avx512.h"
#include "pixel/rows.h"

namespace kx {

namespace {

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
  constexpr std::size_t step = pixelsAtOnce<Bytes>;
  std::uint8_t* dst = span.dst;
  const std::uint8_t* src = span.src;
  const std::uint8_t* mask = span.mask;
  const auto lanes = [&](__m512i s, std::size_t pixels) {
    return Test == RowTest::Keyed ? keyedLanes<Bytes>(s) : namedLanes<Bytes>(mask, pixels);
  };
  std::size_t left = span.count;
  for (; left * Bytes >= registerBytes; left -= step) {
    const __m512i s = _mm512_loadu_si512(src);
    storeLanes<Bytes>(dst, lanes(s, step), s);
    dst += step * Bytes;
    src += step * Bytes;
    if constexpr (Test == RowTest::Masked) mask += step;
  }
  if (left == 0) return;
  // What is not loaded is 0: left out.
  const __m512i s = _mm512_maskz_loadu_epi8(lowest(left * Bytes), src);
  storeLanes<Bytes>(dst, lanes(s, left), s);
}

template <std::size_t Bytes>
void improve(RowKernels& kernels, RowFormat format) {
  kernels.of(Combine::Copy, RowTest::Keyed, format) = copySome<Bytes, RowTest::Keyed>;
  kernels.of(Combine::Copy, RowTest::Masked, format) = copySome<Bytes, RowTest::Masked>;
}

}  // namespace

RowKernels improveCopiesAvx512(RowKernels kernels) {
  improve<1>(kernels, RowFormat::Grey8);
  improve<2>(kernels, RowFormat::Rgb555);
  improve<2>(kernels, RowFormat::Rgb565);
  improve<3>(kernels, RowFormat::Bgr24);
  return kernels;
}

}  // namespace kx
