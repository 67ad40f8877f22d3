// The vector kernels, written once over a vector type V that the file of each instruction set supplies.
//
// V works on registers of V::bytes bytes as lanes of 8 or 16 bits; unpack and pack work within 128-bit groups, so
// that one undoes the other. Everything here is computed to the bit as blend_rules.h says:
// - floor(x / 255) is mulhi(x + 1, 257) for x up to 16065 (channels of 6 bits) and mulhi(x, 0x8081) >> 7 up to 65535;
// - a multiplier with a channel's shift in it puts the quotient in its place, and a mask drops the fraction below.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "pixel/blend_rules.h"
#include "pixel/each_row.h"
#include "pixel/rows.h"

namespace kx {

namespace {

/// What the level below chose: it does the rows that are shorter than a step.
RowKernels shortRows;

/// Runs `body(i)` -> register(s) over all steps of a row and stores them. The last step is computed first and stored
/// last, so that it may overlap the one before it although the row is changed in place.
template <std::size_t Step, typename Body, typename Store>
[[gnu::always_inline]] inline void overRow(std::size_t count, Body body, Store store) {
  const std::size_t last = count - Step;
  const auto tail = body(last);
  for (std::size_t i = 0; i < last; i += Step) store(i, body(i));
  store(last, tail);
}

/// Three registers: the bytes of V::bytes pixels of 24 bits.
template <typename V>
struct Triple {
  typename V::Reg r[3];
};

template <typename V>
Triple<V> loadTriple(const std::uint8_t* p) {
  return {{V::load(p), V::load(p + V::bytes), V::load(p + 2 * V::bytes)}};
}

template <typename V>
void storeTriple(std::uint8_t* p, const Triple<V>& t) {
  for (std::size_t k = 0; k < 3; ++k) V::store(p + k * V::bytes, t.r[k]);
}

// ---- Blending of 16-bit pixels: pairs of source and destination bytes, weighed in one multiplication.

/// Where the fields lie: red begins at bit 8 + redLow, green at greenShift.
template <unsigned RedLow, unsigned GreenShift, unsigned GreenMask>
struct Fields {
  static constexpr unsigned redLow = RedLow, greenShift = GreenShift, greenMask = GreenMask;
};

using AlphaFields555 = Fields<2, 5, 0x1F>;
using AlphaFields565 = Fields<3, 5, 0x3F>;
using MapFields555 = AlphaFields555;
using MapFields565 = Fields<3, 6, 0x1F>;

/// Blue and red of half the pixels as pairs of bytes (source, destination), in lanes of 16 bits by turns.
template <typename V, typename F>
typename V::Reg blueRedPairs(typename V::Reg interleaved) {
  return V::both(V::odd16(interleaved, V::template srl16<F::redLow>(interleaved)), V::splat16(0x1F1F));
}

/// Green as pairs of bytes.
template <typename V, typename F>
typename V::Reg greenPairs(typename V::Reg s, typename V::Reg d) {
  const auto source = V::both(V::template srl16<F::greenShift>(s), V::splat16(F::greenMask));
  const auto destination = V::both(V::template sll16<8 - F::greenShift>(d), V::splat16(F::greenMask << 8));
  return V::either(source, destination);
}

/// Puts channel quotients back: blue and red as bytes of the pixel, green over them.
template <typename V, typename F>
typename V::Reg joinFields(typename V::Reg low, typename V::Reg high, typename V::Reg green) {
  const auto blueRed = V::both(V::pack16(low, high), V::splat16(0x1F | 0x1F << (8 + F::redLow)));
  return V::either(blueRed, V::both(green, V::splat16(F::greenMask << F::greenShift)));
}

template <typename V>
struct AlphaWeights {
  typename V::Weights pair;  ///< bytes 255 - alpha, alpha

  explicit AlphaWeights(std::uint32_t alpha) : pair(V::weights(V::splat16((255 - alpha) | alpha << 8))) {}

  template <typename F>
  [[gnu::always_inline]] typename V::Reg blend(typename V::Reg s, typename V::Reg d) const {
    const auto one = V::splat16(1);
    const auto scale = V::splat32(257 | 257u << (16 + F::redLow));
    const auto quotient = [&](typename V::Reg pairs, typename V::Reg factor) {
      return V::mulHigh16(V::add16(V::weigh(pairs, pair), one), factor);
    };
    return joinFields<V, F>(quotient(blueRedPairs<V, F>(V::unpackLow8(s, d)), scale),
                            quotient(blueRedPairs<V, F>(V::unpackHigh8(s, d)), scale),
                            quotient(greenPairs<V, F>(s, d), V::splat16(257 << F::greenShift)));
  }
};

/// Weights of a step of pixels under an alpha map: s (256 - a) + d a is s (255 - a) + d a + s.
template <typename V, typename F>
[[gnu::always_inline]] inline typename V::Reg blendMapped(typename V::Reg s, typename V::Reg d,
                                                          const std::uint8_t* map) {
  const auto wide = V::widen8(map);
  const auto pair = V::differ(V::either(wide, V::template sll16<8>(wide)), V::splat16(0x00FF));
  const auto scale = V::splat32(256 | 256u << (16 + F::redLow));
  const auto quotient = [](typename V::Reg pairs, typename V::Reg weights, typename V::Reg factor) {
    const auto sum = V::weigh(pairs, V::weights(weights));
    return V::mulHigh16(V::add16(sum, V::both(pairs, V::splat16(0x00FF))), factor);
  };
  const auto mixed =
      joinFields<V, F>(quotient(blueRedPairs<V, F>(V::unpackLow8(s, d)), V::unpackLow16(pair, pair), scale),
                       quotient(blueRedPairs<V, F>(V::unpackHigh8(s, d)), V::unpackHigh16(pair, pair), scale),
                       quotient(greenPairs<V, F>(s, d), pair, V::splat16(256 << F::greenShift)));
  return V::select(V::equal16(pair, V::splat16(0xFF00)), d, mixed);
}

// ---- Blending of bytes: even and odd bytes of a lane apart.

template <typename V>
struct ByteWeights {
  typename V::Reg source, destination;

  explicit ByteWeights(std::uint32_t alpha) : source(V::splat16(255 - alpha)), destination(V::splat16(alpha)) {}

  [[gnu::always_inline]] typename V::Reg blend(typename V::Reg s, typename V::Reg d) const {
    const auto low = V::splat16(0x00FF);
    const auto quotient = [&](typename V::Reg a, typename V::Reg b) {
      return V::mulHigh16(V::add16(V::mulLow16(a, source), V::mulLow16(b, destination)), V::splat16(0x8081));
    };
    const auto even = quotient(V::both(s, low), V::both(d, low));
    const auto odd = quotient(V::template srl16<8>(s), V::template srl16<8>(d));
    return V::either(V::template srl16<7>(even), V::both(V::template sll16<1>(odd), V::splat16(0xFF00)));
  }
};

/// Formats of 16 bits a pixel.
constexpr bool isWide(RowFormat format) { return format == RowFormat::Rgb555 || format == RowFormat::Rgb565; }

/// A register of source pixels over one of the destination's at constant weight. Made once for all rows.
template <typename V, RowFormat Format>
struct ConstantBlend {
  std::conditional_t<isWide(Format), AlphaWeights<V>, ByteWeights<V>> weights;

  explicit ConstantBlend(std::uint32_t alpha) : weights(alpha) {}

  [[gnu::always_inline]] typename V::Reg operator()(typename V::Reg s, typename V::Reg d) const {
    using Fields = std::conditional_t<Format == RowFormat::Rgb555, AlphaFields555, AlphaFields565>;
    if constexpr (isWide(Format))
      return weights.template blend<Fields>(s, d);
    else
      return weights.blend(s, d);
  }
  [[gnu::always_inline]] Triple<V> operator()(const Triple<V>& s, const Triple<V>& d) const {
    return {{weights.blend(s.r[0], d.r[0]), weights.blend(s.r[1], d.r[1]), weights.blend(s.r[2], d.r[2])}};
  }
};

/// s (256 - a) + d a is 256 s + a (d - s), in 16 bits.
template <typename V>
[[gnu::always_inline]] inline typename V::Reg blendMappedBytes(typename V::Reg s, typename V::Reg d,
                                                               typename V::Reg map) {
  const auto low = V::splat16(0x00FF);
  const auto high = V::splat16(0xFF00);
  const auto change = [](typename V::Reg a, typename V::Reg from, typename V::Reg to) {
    return V::mulLow16(a, V::sub16(to, from));
  };
  const auto even = V::add16(V::template sll16<8>(s), change(V::both(map, low), V::both(s, low), V::both(d, low)));
  const auto odd =
      V::add16(V::both(s, high), change(V::template srl16<8>(map), V::template srl16<8>(s), V::template srl16<8>(d)));
  const auto mixed = V::either(V::template srl16<8>(even), V::both(odd, high));
  return V::select(V::equal8(map, V::splat8(keepWeight)), d, mixed);
}

// ---- The tests, as registers of all ones where the pixel stays as it is ("keep").

template <typename V, RowTest Test>
[[gnu::always_inline]] inline typename V::Reg keep16(typename V::Reg s, const RowSpan& row, std::size_t i) {
  if constexpr (Test == RowTest::Keyed) return V::equal16(s, V::zero());
  if constexpr (Test == RowTest::Masked) return V::equal16(V::widen8(row.mask + i), V::zero());
  return V::zero();
}

template <typename V, RowTest Test>
[[gnu::always_inline]] inline typename V::Reg keep8(typename V::Reg s, const RowSpan& row, std::size_t i) {
  if constexpr (Test == RowTest::Keyed) return V::equal8(s, V::zero());
  if constexpr (Test == RowTest::Masked) return V::equal8(V::load(row.mask + i), V::zero());
  return V::zero();
}

/// Bytes of a stream of 24-bit pixels that are first and third of their pixel; read from an offset of 0 to 2.
struct BytePlaces {
  std::uint8_t first[66], third[66];

  constexpr BytePlaces() : first(), third() {
    for (std::size_t i = 0; i < sizeof first; ++i) {
      first[i] = i % 3 == 0 ? 0xFF : 0;
      third[i] = i % 3 == 2 ? 0xFF : 0;
    }
  }
};
constexpr BytePlaces bytePlaces;

/// The pixels of value 0 among V::bytes pixels of 24 bits, all three bytes of each marked. Each byte is joined with the
/// other two of its pixel by shifted loads, which read two bytes before and behind.
template <typename V>
[[gnu::always_inline]] inline Triple<V> keepKeyed24(const std::uint8_t* src) {
  Triple<V> keep;
  for (std::size_t k = 0; k < 3; ++k) {
    const std::uint8_t* p = src + k * V::bytes;
    const auto first = V::load(bytePlaces.first + k * V::bytes % 3);
    const auto third = V::load(bytePlaces.third + k * V::bytes % 3);
    const auto behind = V::either(V::without(V::load(p + 1), third), V::both(V::load(p + 2), first));
    const auto before = V::either(V::without(V::load(p - 1), first), V::both(V::load(p - 2), third));
    keep.r[k] = V::equal8(V::either(V::load(p), V::either(behind, before)), V::zero());
  }
  return keep;
}

template <typename V, RowTest Test>
[[gnu::always_inline]] inline Triple<V> keep24(const std::uint8_t* src, const RowSpan& row, std::size_t i) {
  if constexpr (Test == RowTest::Keyed) return keepKeyed24<V>(src);
  Triple<V> keep = V::triple(row.mask + i);
  for (auto& r : keep.r) r = V::equal8(r, V::zero());
  return keep;
}

// ---- The kernels.

/// One step of 8-bit or 16-bit pixels: `mix(s, d, i)` gives the drawn value.
template <typename V, std::size_t Bytes, RowTest Test, typename Mix>
[[gnu::always_inline]] inline void mixRow(const RowSpan& row, Mix mix) {
  constexpr std::size_t step = V::bytes / Bytes;
  overRow<step>(
      row.count,
      [&](std::size_t i) {
        const auto s = V::load(row.src + i * Bytes);
        const auto d = V::load(row.dst + i * Bytes);
        const auto value = mix(s, d, i);
        if constexpr (Test == RowTest::All) return value;
        if constexpr (Bytes == 1) return V::select(keep8<V, Test>(s, row, i), d, value);
        return V::select(keep16<V, Test>(s, row, i), d, value);
      },
      [&](std::size_t i, auto value) { V::store(row.dst + i * Bytes, value); });
}

/// The same for 24-bit pixels; `mix(s, d, k, i)` works on register k of a step, `mixOne(i)` on one pixel. A key looks
/// beyond its pixels, so that the ends of the row are done by themselves.
template <typename V, RowTest Test, typename Mix, typename MixOne>
[[gnu::always_inline]] inline void mixRow24(const RowSpan& row, Mix mix, MixOne mixOne) {
  constexpr std::size_t edge = Test == RowTest::Keyed ? 1 : 0;
  const auto steps = [&](std::size_t at) {
    const std::size_t i = at + edge;
    const auto s = loadTriple<V>(row.src + i * 3);
    const auto d = loadTriple<V>(row.dst + i * 3);
    auto value = mix(s, d, i);
    if constexpr (Test != RowTest::All) {
      const auto keep = keep24<V, Test>(row.src + i * 3, row, i);
      for (std::size_t k = 0; k < 3; ++k) value.r[k] = V::select(keep.r[k], d.r[k], value.r[k]);
    }
    return value;
  };
  if constexpr (edge != 0) {
    // Both ends first: they change nothing that the steps read.
    const std::size_t last = row.count - 1;
    if (!isKey(load24(row.src))) store24(row.dst, mixOne(load24(row.src), load24(row.dst)));
    if (!isKey(load24(row.src + last * 3)))
      store24(row.dst + last * 3, mixOne(load24(row.src + last * 3), load24(row.dst + last * 3)));
  }
  overRow<V::bytes>(row.count - 2 * edge, steps,
                    [&](std::size_t at, const auto& value) { storeTriple<V>(row.dst + (at + edge) * 3, value); });
}

constexpr auto sourceOnly = [](auto s, auto, auto...) { return s; };

template <typename V, RowFormat Format, Combine Rule, RowTest Test>
[[gnu::always_inline]] inline void combineRow(const RowSpan& row, const ConstantBlend<V, Format>& blend) {
  if constexpr (isWide(Format)) {
    using MapFields = std::conditional_t<Format == RowFormat::Rgb555, MapFields555, MapFields565>;
    if constexpr (Rule == Combine::Copy) mixRow<V, 2, Test>(row, sourceOnly);
    if constexpr (Rule == Combine::Alpha)
      mixRow<V, 2, Test>(row, [&](auto s, auto d, std::size_t) { return blend(s, d); });
    if constexpr (Rule == Combine::Alphamap)
      mixRow<V, 2, Test>(row,
                         [&](auto s, auto d, std::size_t i) { return blendMapped<V, MapFields>(s, d, row.map + i); });
  } else if constexpr (Format != RowFormat::Bgr24) {
    if constexpr (Rule == Combine::Copy) mixRow<V, 1, Test>(row, sourceOnly);
    if constexpr (Rule == Combine::Alpha)
      mixRow<V, 1, Test>(row, [&](auto s, auto d, std::size_t) { return blend(s, d); });
    if constexpr (Rule == Combine::Alphamap)
      mixRow<V, 1, Test>(
          row, [&](auto s, auto d, std::size_t i) { return blendMappedBytes<V>(s, d, V::load(row.map + i)); });
  } else {
    if constexpr (Rule == Combine::Copy) mixRow24<V, Test>(row, sourceOnly, sourceOnly);
    if constexpr (Rule == Combine::Alpha)
      mixRow24<V, Test>(
          row, [&](const auto& s, const auto& d, std::size_t) { return blend(s, d); },
          [&](std::uint32_t s, std::uint32_t d) { return blendAlpha<Bgr24>(s, d, row.alpha); });
    if constexpr (Rule == Combine::Alphamap)
      mixRow24<V, Test>(
          row,
          [&](const auto& s, const auto& d, std::size_t i) {
            const auto map = V::triple(row.map + i);
            return Triple<V>{{blendMappedBytes<V>(s.r[0], d.r[0], map.r[0]),
                              blendMappedBytes<V>(s.r[1], d.r[1], map.r[1]),
                              blendMappedBytes<V>(s.r[2], d.r[2], map.r[2])}};
          },
          sourceOnly);
  }
}

template <typename V>
concept MasksParts = requires {
  typename V::Part;
};

/// Rows of less than a step, where V loads and stores parts of a register.
template <typename V, RowFormat Format, Combine Rule, RowTest Test>
void combineShortRows(const RowSpan& span, const ConstantBlend<V, Format>& blend) {
  constexpr std::size_t bytes = pixelBytes<Format>;
  const typename V::Part pixels(span.count * bytes), besides(span.count);
  eachRow<Rule>(span, [&](const RowSpan& row) {
    std::uint8_t dst[V::bytes], src[V::bytes], mask[V::bytes], map[V::bytes];
    V::store(dst, pixels.load(row.dst));
    V::store(src, pixels.load(row.src));
    if constexpr (Test == RowTest::Masked) V::store(mask, besides.load(row.mask));
    if constexpr (Rule == Combine::Alphamap) V::store(map, besides.load(row.map));
    combineRow<V, Format, Rule, Test>({dst, src, V::bytes / bytes, mask, map, row.alpha}, blend);
    pixels.store(row.dst, V::load(dst));
  });
}

template <typename V, RowFormat Format, Combine Rule, RowTest Test>
void combineRows(const RowSpan& span) {
  constexpr bool hasEdges = Format == RowFormat::Bgr24 && Test == RowTest::Keyed;
  constexpr std::size_t shortest = (isWide(Format) ? V::bytes / 2 : V::bytes) + (hasEdges ? 2 : 0);
  // Half a step and more is one for the level below, which then needs no masks.
  constexpr bool masksShortRows = MasksParts<V> && Rule != Combine::Copy && Format != RowFormat::Bgr24;
  const bool isShort = masksShortRows && span.count < shortest / 2;
  if (!isShort && span.count < shortest) return shortRows.of(Rule, Test, Format)(span);
  const ConstantBlend<V, Format> blend(Rule == Combine::Alpha ? span.alpha : 0);
  if constexpr (masksShortRows)
    if (isShort) return combineShortRows<V, Format, Rule, Test>(span, blend);
  eachRow<Rule>(span, [&](const RowSpan& row) { combineRow<V, Format, Rule, Test>(row, blend); });
}

template <typename V, RowFormat Format>
void copyRows(const RowSpan& span) {
  const std::size_t bytes = span.count * pixelBytes<Format>;
  if (bytes < V::bytes || bytes >= longestCopy) return shortRows.of(Combine::Copy, RowTest::All, Format)(span);
  eachRow<Combine::Copy>(span, [=](const RowSpan& row) {
    overRow<V::bytes>(
        bytes, [&](std::size_t i) { return V::load(row.src + i); },
        [&](std::size_t i, auto value) { V::store(row.dst + i, value); });
  });
}

template <typename V, RowFormat Format>
void vectorColour(const ColourArea& given) {
  const ColourArea area = given;
  constexpr std::size_t bytes = pixelBytes<Format>;
  constexpr std::size_t step = bytes == 3 ? V::bytes : V::bytes / bytes;
  if (area.count < step) return shortRows.blendColour[static_cast<std::size_t>(Format)](given);

  std::uint8_t pixels[step * bytes];
  for (std::size_t i = 0; i < step; ++i) storePixel<bytes>(pixels + i * bytes, area.colour);
  const ConstantBlend<V, Format> blend(area.alpha);
  for (std::size_t y = 0; y < area.rows; ++y) {
    std::uint8_t* const row = area.dst + static_cast<std::ptrdiff_t>(y) * area.pitch;
    if constexpr (bytes == 3)
      overRow<step>(
          area.count, [&, s = loadTriple<V>(pixels)](std::size_t i) { return blend(s, loadTriple<V>(row + i * 3)); },
          [=](std::size_t i, const auto& value) { storeTriple<V>(row + i * 3, value); });
    else
      overRow<step>(
          area.count, [&, s = V::load(pixels)](std::size_t i) { return blend(s, V::load(row + i * bytes)); },
          [=](std::size_t i, auto value) { V::store(row + i * bytes, value); });
  }
}

template <typename V, std::size_t Bytes>
void vectorKeyMask(std::uint8_t* mask, const std::uint8_t* src, std::size_t count) {
  if (count < V::bytes) return shortRows.keyMask[Bytes - 1](mask, src, count);
  overRow<V::bytes>(
      count,
      [&](std::size_t i) {
        if constexpr (Bytes == 1) return V::differ(V::equal8(V::load(src + i), V::zero()), V::splat8(0xFF));
        const auto low = V::equal16(V::load(src + 2 * i), V::zero());
        const auto high = V::equal16(V::load(src + 2 * i + V::bytes), V::zero());
        return V::differ(V::packMask16(low, high), V::splat8(0xFF));
      },
      [&](std::size_t i, auto value) { V::store(mask + i, value); });
}

template <typename V>
struct DepthStep {
  typename V::Reg mask, z;
};

/// `step(stored, i)` gives the pixels that pass and the depths they store.
template <typename V, typename Step>
[[gnu::always_inline]] inline void depthSteps(const DepthSpan& row, Step step) {
  overRow<V::bytes>(
      row.count,
      [&](std::size_t i) {
        const auto stored = V::load(row.zBuffer + i);
        DepthStep<V> out = step(stored, i);
        if (row.refine) out.mask = V::both(out.mask, V::load(row.mask + i));
        out.z = V::select(out.mask, out.z, stored);
        return out;
      },
      [&](std::size_t i, const DepthStep<V>& out) {
        V::store(row.zBuffer + i, out.z);
        V::store(row.mask + i, out.mask);
      });
}

template <typename V>
void vectorDepth(const DepthSpan& span) {
  const DepthSpan row{span.mask, span.zBuffer, span.count, span.refine, span.zMap, span.z};
  // Larger offsets than these pass or fail whatever the map says, or wrap.
  if (row.count < V::bytes || row.z < -255 || row.z > 255) return shortRows.depth(span);
  const auto low = V::splat8(static_cast<std::uint8_t>(row.z));
  if (row.zMap == nullptr) {
    depthSteps<V>(row, [&](auto stored, std::size_t) {
      return DepthStep<V>{V::equal8(V::min8(low, stored), low), low};
    });
  } else if (row.z >= 0) {
    // map + z <= stored: stored reaches z, and the rest reaches the map.
    depthSteps<V>(row, [&](auto stored, std::size_t i) {
      const auto map = V::load(row.zMap + i);
      const auto reaches = V::equal8(V::min8(low, stored), low);
      const auto rest = V::equal8(V::min8(map, V::subSaturated8(stored, low)), map);
      return DepthStep<V>{V::both(reaches, rest), V::add8(map, low)};
    });
  } else {
    const auto lift = V::splat8(static_cast<std::uint8_t>(-row.z));
    depthSteps<V>(row, [&](auto stored, std::size_t i) {
      const auto map = V::load(row.zMap + i);
      return DepthStep<V>{V::equal8(V::min8(map, V::addSaturated8(stored, lift)), map), V::add8(map, low)};
    });
  }
}

template <typename V, RowFormat Format>
void improveFormat(RowKernels& kernels) {
  kernels.blendColour[static_cast<std::size_t>(Format)] = vectorColour<V, Format>;
  kernels.of(Combine::Copy, RowTest::All, Format) = copyRows<V, Format>;
  kernels.of(Combine::Copy, RowTest::Keyed, Format) = combineRows<V, Format, Combine::Copy, RowTest::Keyed>;
  kernels.of(Combine::Copy, RowTest::Masked, Format) = combineRows<V, Format, Combine::Copy, RowTest::Masked>;
  kernels.of(Combine::Alpha, RowTest::All, Format) = combineRows<V, Format, Combine::Alpha, RowTest::All>;
  kernels.of(Combine::Alpha, RowTest::Keyed, Format) = combineRows<V, Format, Combine::Alpha, RowTest::Keyed>;
  kernels.of(Combine::Alpha, RowTest::Masked, Format) = combineRows<V, Format, Combine::Alpha, RowTest::Masked>;
  kernels.of(Combine::Alphamap, RowTest::All, Format) = combineRows<V, Format, Combine::Alphamap, RowTest::All>;
  kernels.of(Combine::Alphamap, RowTest::Masked, Format) = combineRows<V, Format, Combine::Alphamap, RowTest::Masked>;
}

/// All that V does better than the level below.
template <typename V>
RowKernels improveWith(RowKernels kernels) {
  shortRows = kernels;
  improveFormat<V, RowFormat::Grey8>(kernels);
  improveFormat<V, RowFormat::Rgb555>(kernels);
  improveFormat<V, RowFormat::Rgb565>(kernels);
  improveFormat<V, RowFormat::Bgr24>(kernels);
  kernels.keyMask[0] = vectorKeyMask<V, 1>;
  kernels.keyMask[1] = vectorKeyMask<V, 2>;
  kernels.depth = vectorDepth<V>;
  return kernels;
}

}  // namespace

}  // namespace kx
