// The image kernels with AVX2: sixteen pixels of 16 bits or eight of 24 at a time, and the rest by the rules.
// SPDX-License-Identifier: MIT
#include <immintrin.h>

#include "pixel/blend_rules.h"
#include "pixel/image_rows.h"
#include "pixel/image_rules.h"

namespace kx {

namespace {

using Vector = __m256i;

Vector load(const std::uint8_t* p) { return _mm256_loadu_si256(reinterpret_cast<const Vector*>(p)); }
void store(std::uint8_t* p, Vector v) { _mm256_storeu_si256(reinterpret_cast<Vector*>(p), v); }
__m128i loadHalf(const std::uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
void storeHalf(std::uint8_t* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }

Vector words(std::uint32_t value) { return _mm256_set1_epi16(static_cast<std::int16_t>(value)); }
Vector dwords(std::uint32_t value) { return _mm256_set1_epi32(static_cast<std::int32_t>(value)); }
Vector eachHalf(__m128i half) { return _mm256_broadcastsi128_si256(half); }

// Four pixels of 24 bits in each half of a vector.

constexpr std::size_t groupBytes = 12;
/// Pixels that must be left in a row for a step over `n` of them: the loads of a step end four bytes past its pixels.
constexpr std::size_t withOverrun(std::size_t n) { return n + 2; }

Vector loadGroups(const std::uint8_t* p) {
  return _mm256_inserti128_si256(_mm256_castsi128_si256(loadHalf(p)), loadHalf(p + groupBytes), 1);
}

/// Stores the low twelve bytes of each half next to each other, and nothing else.
void storeGroups(std::uint8_t* p, Vector groups) {
  const __m128i second = _mm256_extracti128_si256(groups, 1);
  storeHalf(p, _mm256_castsi256_si128(groups));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(p + groupBytes), second);
  store32(p + groupBytes + 8, static_cast<std::uint32_t>(_mm_extract_epi32(second, 2)));
}

/// Pixels as 32-bit words with an empty high byte, and back.
Vector spreadPixels(Vector groups) {
  return _mm256_shuffle_epi8(groups, eachHalf(_mm_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1)));
}
Vector joinPixels(Vector pixels) {
  return _mm256_shuffle_epi8(pixels, eachHalf(_mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1)));
}

/// Lightness of spread pixels, in their 32-bit words.
Vector lightness24(Vector pixels) {
  const Vector green = _mm256_srli_epi32(pixels, 8);
  const Vector red = _mm256_srli_epi32(pixels, 16);
  const Vector most = _mm256_max_epu8(_mm256_max_epu8(pixels, green), red);
  const Vector least = _mm256_min_epu8(_mm256_min_epu8(pixels, green), red);
  const Vector low = dwords(0xFF);
  return _mm256_srli_epi32(_mm256_add_epi32(_mm256_and_si256(most, low), _mm256_and_si256(least, low)), 1);
}

// Sixteen pixels of 16 bits, their channels widened in words of their own.

struct WideChannels {
  Vector r, g, b;
};

template <bool SixBitGreen>
WideChannels widenRow(Vector pixels) {
  const Vector ones = words(7);
  const auto field = [&](Vector inPlace, std::uint32_t mask) {
    return _mm256_or_si256(_mm256_and_si256(inPlace, words(mask)), ones);
  };
  const Vector blue = field(_mm256_slli_epi16(pixels, 3), 0xF8);
  if constexpr (SixBitGreen)
    return {field(_mm256_srli_epi16(pixels, 8), 0xF8), field(_mm256_srli_epi16(pixels, 3), 0xFC), blue};
  return {field(_mm256_srli_epi16(pixels, 7), 0xF8), field(_mm256_srli_epi16(pixels, 2), 0xF8), blue};
}

template <bool SixBitGreen>
Vector narrowRow(const WideChannels& c) {
  const Vector top5 = words(0xF8);
  const Vector red = _mm256_slli_epi16(_mm256_and_si256(c.r, top5), SixBitGreen ? 8 : 7);
  const Vector green = SixBitGreen ? _mm256_slli_epi16(_mm256_and_si256(c.g, words(0xFC)), 3)
                                   : _mm256_slli_epi16(_mm256_and_si256(c.g, top5), 2);
  return _mm256_or_si256(_mm256_or_si256(red, green), _mm256_srli_epi16(c.b, 3));
}

Vector lightness16(const WideChannels& c) {
  const Vector most = _mm256_max_epi16(_mm256_max_epi16(c.r, c.g), c.b);
  const Vector least = _mm256_min_epi16(_mm256_min_epi16(c.r, c.g), c.b);
  return _mm256_srli_epi16(_mm256_add_epi16(most, least), 1);
}

// Grey: sums of weighted channels in thousandths, plus 500, divided by 1000.

/// Eighths of the sums, in words: floor(sum / 1000) is floor(floor(sum / 8) / 125), and sums stay below 2^18.
Vector eighths(Vector sums0, Vector sums1) {
  return _mm256_packus_epi32(_mm256_srli_epi32(sums0, 3), _mm256_srli_epi32(sums1, 3));
}

/// floor(v / 125) for words below 2^15.
Vector divideBy125(Vector v) { return _mm256_srli_epi16(_mm256_mulhi_epu16(v, words(33555)), 6); }

template <bool SixBitGreen>
void grey16(std::uint8_t* row, std::size_t count) {
  const Vector redGreenWeights = dwords(299 | 557 << 16);
  const Vector blueWeight = dwords(144 | 500 << 16);  // the second factor is 1
  std::size_t i = 0;
  for (; i + 16 <= count; i += 16) {
    const WideChannels c = widenRow<SixBitGreen>(load(row + 2 * i));
    const auto sums = [&](Vector redGreen, Vector blueOne) {
      return _mm256_add_epi32(_mm256_madd_epi16(redGreen, redGreenWeights), _mm256_madd_epi16(blueOne, blueWeight));
    };
    // No colour of these formats makes a tie.
    const Vector grey =
        divideBy125(eighths(sums(_mm256_unpacklo_epi16(c.r, c.g), _mm256_unpacklo_epi16(c.b, words(1))),
                            sums(_mm256_unpackhi_epi16(c.r, c.g), _mm256_unpackhi_epi16(c.b, words(1)))));
    store(row + 2 * i, narrowRow<SixBitGreen>({grey, grey, grey}));
  }
  for (; i < count; ++i) {
    const std::uint32_t grey = imageGrey(widen<SixBitGreen>(load16(row + 2 * i)));
    store16(row + 2 * i, narrow<SixBitGreen>({grey, grey, grey}));
  }
}

void greyOneByOne(std::uint8_t* row, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i)
    store24(row + 3 * i, imageGrey({row[3 * i + 2], row[3 * i + 1], row[3 * i]}) * 0x010101);
}

void grey24(std::uint8_t* row, std::size_t count) {
  const Vector blueGreen = eachHalf(_mm_setr_epi8(0, -1, 1, -1, 3, -1, 4, -1, 6, -1, 7, -1, 9, -1, 10, -1));
  const Vector red = eachHalf(_mm_setr_epi8(2, -1, -1, -1, 5, -1, -1, -1, 8, -1, -1, -1, 11, -1, -1, -1));
  const Vector firstThrice = eachHalf(_mm_setr_epi8(0, 0, 0, 2, 2, 2, 4, 4, 4, 6, 6, 6, -1, -1, -1, -1));
  const Vector secondThrice = eachHalf(_mm_setr_epi8(8, 8, 8, 10, 10, 10, 12, 12, 12, 14, 14, 14, -1, -1, -1, -1));
  std::size_t i = 0;
  for (; i + withOverrun(16) <= count; i += 16) {
    std::uint8_t* const at = row + 3 * i;
    const auto sums = [&](Vector groups) {
      const Vector two = _mm256_madd_epi16(_mm256_shuffle_epi8(groups, blueGreen), dwords(144 | 557 << 16));
      const Vector one = _mm256_madd_epi16(_mm256_shuffle_epi8(groups, red), dwords(299));
      return _mm256_add_epi32(_mm256_add_epi32(two, one), dwords(500));
    };
    const Vector sums0 = sums(loadGroups(at));
    const Vector sums1 = sums(loadGroups(at + 2 * groupBytes));
    const Vector scaled = eighths(sums0, sums1);
    const Vector grey = divideBy125(scaled);
    // A tie is a sum without remainder, in the eighths and below them.
    const Vector rest = _mm256_sub_epi16(scaled, _mm256_mullo_epi16(grey, words(125)));
    const Vector below = _mm256_packus_epi32(_mm256_and_si256(sums0, dwords(7)), _mm256_and_si256(sums1, dwords(7)));
    const Vector ties = _mm256_cmpeq_epi16(_mm256_or_si256(rest, below), _mm256_setzero_si256());
    if (_mm256_movemask_epi8(ties) != 0) {
      greyOneByOne(at, 16);
      continue;
    }
    storeGroups(at, _mm256_shuffle_epi8(grey, firstThrice));
    storeGroups(at + 2 * groupBytes, _mm256_shuffle_epi8(grey, secondThrice));
  }
  greyOneByOne(row + 3 * i, count - i);
}

// Brightness. A channel in the high byte of a word times a factor has the scaled channel in its high half.

Vector scaleWords(Vector highBytes, Vector factors) { return _mm256_mulhi_epu16(highBytes, factors); }

/// What keepVisible() says, for results and pixels compared as elements of one size.
template <typename Equal>
Vector keepVisibleRow(bool transparent, Vector before, Vector after, Vector one, Equal equal) {
  if (!transparent) return after;
  const Vector zero = _mm256_setzero_si256();
  const Vector wasZero = equal(before, zero);
  const Vector visible = _mm256_or_si256(after, _mm256_and_si256(equal(after, zero), one));
  return _mm256_andnot_si256(wasZero, visible);
}

Vector equalBytes(Vector a, Vector b) { return _mm256_cmpeq_epi8(a, b); }
Vector equalWords(Vector a, Vector b) { return _mm256_cmpeq_epi16(a, b); }
Vector equalDwords(Vector a, Vector b) { return _mm256_cmpeq_epi32(a, b); }

/// The factors of words of lightness; 256 stands for every pivot beyond all of them.
struct WordFactors {
  explicit WordFactors(const BrightnessRule& rule)
      : pivot(words(static_cast<std::uint32_t>(std::min(rule.pivot, 256)))),
        below(words(rule.below)),
        at(words(rule.at)),
        above(words(rule.above)) {}

  [[nodiscard]] Vector of(Vector lightness) const {
    const Vector upper = _mm256_blendv_epi8(at, above, _mm256_cmpgt_epi16(lightness, pivot));
    return _mm256_blendv_epi8(upper, below, _mm256_cmpgt_epi16(pivot, lightness));
  }

  Vector pivot, below, at, above;
};

void brightenRow8(std::uint8_t* row, std::size_t count, const BrightnessRule& rule) {
  const WordFactors factors(rule);
  const Vector zero = _mm256_setzero_si256();
  std::size_t i = 0;
  for (; i + 32 <= count; i += 32) {
    const Vector pixels = load(row + i);
    const auto scale = [&](Vector highBytes) {
      return scaleWords(highBytes, factors.of(_mm256_srli_epi16(highBytes, 8)));
    };
    const Vector scaled =
        _mm256_packus_epi16(scale(_mm256_unpacklo_epi8(zero, pixels)), scale(_mm256_unpackhi_epi8(zero, pixels)));
    store(row + i, keepVisibleRow(rule.transparent, pixels, scaled, _mm256_set1_epi8(1), equalBytes));
  }
  for (; i < count; ++i) row[i] = static_cast<std::uint8_t>(brighten8(rule, row[i]));
}

template <bool SixBitGreen>
void brightenRow16(std::uint8_t* row, std::size_t count, const BrightnessRule& rule) {
  const WordFactors factors(rule);
  std::size_t i = 0;
  for (; i + 16 <= count; i += 16) {
    const Vector pixels = load(row + 2 * i);
    const WideChannels c = widenRow<SixBitGreen>(pixels);
    const Vector factor = factors.of(lightness16(c));
    const auto scale = [&](Vector channel) {
      return _mm256_min_epi16(scaleWords(_mm256_slli_epi16(channel, 8), factor), words(255));
    };
    const Vector scaled = narrowRow<SixBitGreen>({scale(c.r), scale(c.g), scale(c.b)});
    const Vector kept = keepVisibleRow(rule.transparent, pixels, scaled, words(1), equalWords);
    store(row + 2 * i, _mm256_blendv_epi8(kept, pixels, equalWords(factor, words(256))));
  }
  for (; i < count; ++i) store16(row + 2 * i, brighten16<SixBitGreen>(rule, load16(row + 2 * i)));
}

void brightenRow24(std::uint8_t* row, std::size_t count, const BrightnessRule& rule) {
  const auto both = [](std::uint32_t factor) { return dwords(factor | factor << 16); };
  const Vector pivot = dwords(static_cast<std::uint32_t>(rule.pivot));
  const Vector below = both(rule.below);
  const Vector level = both(rule.at);
  const Vector above = both(rule.above);
  const Vector zero = _mm256_setzero_si256();
  std::size_t i = 0;
  for (; i + withOverrun(8) <= count; i += 8) {
    const Vector pixels = spreadPixels(loadGroups(row + 3 * i));
    const Vector lightness = lightness24(pixels);
    const Vector upper = _mm256_blendv_epi8(level, above, _mm256_cmpgt_epi32(lightness, pivot));
    const Vector factor = _mm256_blendv_epi8(upper, below, _mm256_cmpgt_epi32(pivot, lightness));
    const Vector scaled =
        _mm256_packus_epi16(scaleWords(_mm256_unpacklo_epi8(zero, pixels), _mm256_unpacklo_epi32(factor, factor)),
                            scaleWords(_mm256_unpackhi_epi8(zero, pixels), _mm256_unpackhi_epi32(factor, factor)));
    storeGroups(row + 3 * i, joinPixels(keepVisibleRow(rule.transparent, pixels, scaled, dwords(1), equalDwords)));
  }
  for (; i < count; ++i) store24(row + 3 * i, brighten24(rule, load24(row + 3 * i)));
}

// Sums of lightness.

/// Sum of the 32-bit words, of which none exceeds 2^28.
std::uint32_t sumOfDwords(Vector v) {
  __m128i sum = _mm_add_epi32(_mm256_castsi256_si128(v), _mm256_extracti128_si256(v, 1));
  sum = _mm_add_epi32(sum, _mm_shuffle_epi32(sum, 0x4E));
  sum = _mm_add_epi32(sum, _mm_shuffle_epi32(sum, 0xB1));
  return static_cast<std::uint32_t>(_mm_cvtsi128_si32(sum));
}

std::uint32_t sum8(const std::uint8_t* row, std::size_t count) {
  Vector sums = _mm256_setzero_si256();
  Vector more = sums;
  std::size_t i = 0;
  for (; i + 64 <= count; i += 64) {
    sums = _mm256_add_epi32(sums, _mm256_sad_epu8(load(row + i), _mm256_setzero_si256()));
    more = _mm256_add_epi32(more, _mm256_sad_epu8(load(row + i + 32), _mm256_setzero_si256()));
  }
  std::uint32_t sum = sumOfDwords(_mm256_add_epi32(sums, more));
  for (; i < count; ++i) sum += row[i];
  return sum;
}

template <bool SixBitGreen>
std::uint32_t sum16(const std::uint8_t* row, std::size_t count) {
  Vector sums = _mm256_setzero_si256();
  std::size_t i = 0;
  for (; i + 16 <= count; i += 16) {
    const Vector lightness = lightness16(widenRow<SixBitGreen>(load(row + 2 * i)));
    sums = _mm256_add_epi32(sums, _mm256_madd_epi16(lightness, words(1)));
  }
  std::uint32_t sum = sumOfDwords(sums);
  for (; i < count; ++i) sum += kx::lightness(widen<SixBitGreen>(load16(row + 2 * i)));
  return sum;
}

std::uint32_t sum24(const std::uint8_t* row, std::size_t count) {
  Vector sums = _mm256_setzero_si256();
  std::size_t i = 0;
  for (; i + withOverrun(8) <= count; i += 8)
    sums = _mm256_add_epi32(sums, lightness24(spreadPixels(loadGroups(row + 3 * i))));
  std::uint32_t sum = sumOfDwords(sums);
  for (; i < count; ++i) sum += kx::lightness({row[3 * i + 2], row[3 * i + 1], row[3 * i]});
  return sum;
}

void invertRow(std::uint8_t* bytes, std::size_t size, std::uint16_t mask) {
  const Vector masks = words(mask);
  std::size_t i = 0;
  for (; i + 32 <= size; i += 32) store(bytes + i, _mm256_andnot_si256(load(bytes + i), masks));
  for (; i < size; ++i) bytes[i] = static_cast<std::uint8_t>(~bytes[i] & (mask >> (8 * (i & 1))));
}

// Reversing: blocks from both ends change places, each turned round.

template <std::size_t Bytes>
void reverseRest(std::uint8_t* left, std::uint8_t* right) {
  for (; left + Bytes < right; left += Bytes) {
    right -= Bytes;
    const std::uint32_t value = loadPixel<Bytes>(left);
    storePixel<Bytes>(left, loadPixel<Bytes>(right));
    storePixel<Bytes>(right, value);
  }
}

template <std::size_t Bytes>
void reverseRow(std::uint8_t* row, std::size_t count) {
  const __m128i order = Bytes == 1 ? _mm_setr_epi8(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0)
                                   : _mm_setr_epi8(14, 15, 12, 13, 10, 11, 8, 9, 6, 7, 4, 5, 2, 3, 0, 1);
  const auto turn = [order](Vector v) {
    return _mm256_permute4x64_epi64(_mm256_shuffle_epi8(v, eachHalf(order)), 0x4E);
  };
  std::uint8_t* left = row;
  std::uint8_t* right = row + count * Bytes;
  for (; right - left >= 64; left += 32, right -= 32) {
    const Vector first = load(left);
    store(left, turn(load(right - 32)));
    store(right - 32, turn(first));
  }
  reverseRest<Bytes>(left, right);
}

/// Five pixels in sixteen bytes; the byte that is no part of them stays.
void reverseRow24(std::uint8_t* row, std::size_t count) {
  const __m128i toLeft = _mm_setr_epi8(13, 14, 15, 10, 11, 12, 7, 8, 9, 4, 5, 6, 1, 2, 3, -1);
  const __m128i toRight = _mm_setr_epi8(-1, 12, 13, 14, 9, 10, 11, 6, 7, 8, 3, 4, 5, 0, 1, 2);
  const __m128i lastByte = _mm_setr_epi8(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, -1);
  const __m128i firstByte = _mm_setr_epi8(-1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
  std::uint8_t* left = row;
  std::uint8_t* right = row + 3 * count;
  if (right - left >= 32) {
    __m128i first = loadHalf(left);
    __m128i last = loadHalf(right - 16);
    do {
      // Before the stores, as a load of bytes just stored would wait for them.
      const __m128i nextFirst = loadHalf(left + 15);
      const __m128i nextLast = loadHalf(right - 31);
      storeHalf(left, _mm_blendv_epi8(_mm_shuffle_epi8(last, toLeft), first, lastByte));
      storeHalf(right - 16, _mm_blendv_epi8(_mm_shuffle_epi8(first, toRight), last, firstByte));
      left += 15;
      right -= 15;
      first = nextFirst;
      last = nextLast;
    } while (right - left >= 32);
  }
  reverseRest<3>(left, right);
}

}  // namespace

ImageKernels avx2ImageRows() {
  return {
      .grey = {nullptr, grey16<false>, grey16<true>, grey24},
      .brighten = {brightenRow8, brightenRow16<false>, brightenRow16<true>, brightenRow24},
      .sumLightness = {sum8, sum16<false>, sum16<true>, sum24},
      .invert = invertRow,
      .reverse = {reverseRow<1>, reverseRow<2>, reverseRow24},
  };
}

}  // namespace kx
