// Triangle spans in blocks of pixels, for kernels of instruction sets with vectors. What differs between them comes
// from an Access class:
//   bytes                       size of a vector
//   texels(base, even, odd)     16-bit texels at byte offsets, in pixel order from those of even and odd pixels
//   interleave(even, odd)       low halves of even words, high halves of odd words
//   loadPart(p, n)              n pixels, fewer than a block
//   storePart(p, pixels, n)
// All code has internal linkage.
// SPDX-License-Identifier: MIT
#pragma once

#include "render3d/triangle_rows.h"

namespace kx {

namespace {

template <int Bytes>
struct Vectors {
  using Words [[gnu::vector_size(Bytes)]] = std::int32_t;
  using UnsignedWords [[gnu::vector_size(Bytes)]] = std::uint32_t;
  using Halves [[gnu::vector_size(Bytes)]] = std::int16_t;
};

inline std::int16_t loadTexel(const std::uint8_t* p) {
  std::int16_t texel;
  __builtin_memcpy(&texel, p, sizeof texel);
  return texel;
}

/// Byte offsets of a block's texels, laid down in memory: loading them from there is cheaper than taking them out of
/// vectors one by one, which compilers would do.
template <int Bytes>
struct TexelOffsets {
  using Words = typename Vectors<Bytes>::Words;
  Words even, odd;

  TexelOffsets(const Words& evenOffsets, const Words& oddOffsets) : even(evenOffsets), odd(oddOffsets) {
    __asm__("" : "+m"(even), "+m"(odd));
  }
};

template <class Access, int GreenShift, bool Blended, bool Limited>
class VectorFiller {
  using Words = typename Vectors<Access::bytes>::Words;
  using UnsignedWords = typename Vectors<Access::bytes>::UnsignedWords;
  using Halves = typename Vectors<Access::bytes>::Halves;

  /// Pixels of a block. Each has 16 bits, but its stepped values have 32: they are held for even pixels, and those of
  /// odd pixels are one step further.
  static constexpr int block = Access::bytes / 2;

  /// One stepped value.
  struct Stepped {
    UnsignedWords step;
    UnsignedWords even;

    Stepped(std::int32_t at, std::int32_t perPixel)
        : step(UnsignedWords{} + static_cast<std::uint32_t>(perPixel)),
          even(UnsignedWords{} + static_cast<std::uint32_t>(at) + step * evenNumbers()) {}

    [[nodiscard]] UnsignedWords odd() const { return even + step; }
    void nextBlock() { even += step * static_cast<std::uint32_t>(block); }

    /// In pixel order, as counts of channel steps.
    template <int Bits>
    [[nodiscard]] Halves offsets() const {
      return Access::interleave(even >> 16, odd()) >> (Bits - 16);
    }

    static UnsignedWords evenNumbers() {
      UnsignedWords numbers;
      for (int i = 0; i < block / 2; ++i) numbers[i] = static_cast<std::uint32_t>(2 * i);
      return numbers;
    }
  };

public:
  explicit VectorFiller(const TriangleJob& job)
      : texels_(job.texels),
        widthCode_(job.widthCode),
        lastTexel_(job.lastTexel),
        weight_(static_cast<std::int16_t>(256 - job.alpha)) {}

  void operator()(const TriangleSpan& span) const {
    Stepped u(span.at[laneU], span.step[laneU]);
    Stepped v(span.at[laneV], span.step[laneV]);
    Stepped red(span.at[laneRed], span.step[laneRed]);
    Stepped green(span.at[laneGreen], span.step[laneGreen]);
    Stepped blue(span.at[laneBlue], span.step[laneBlue]);
    const auto shade = [&](Halves texels, auto target) {
      return shadeBlock(texels, target, red.template offsets<redStepBits>(), green.template offsets<greenStepBits>(),
                        blue.template offsets<blueStepBits>());
    };
    std::uint8_t* pixels = span.pixels;
    std::int32_t left = span.count;
    for (; left >= block; left -= block) {
      store(pixels, shade(fetch<Limited>(u, v), [=] { return load(pixels); }));
      u.nextBlock();
      v.nextBlock();
      red.nextBlock();
      green.nextBlock();
      blue.nextBlock();
      pixels += 2 * block;
    }
    // Places past the end of the span may lie anywhere, so their texels are always limited to the block.
    if (left > 0)
      Access::storePart(pixels, shade(fetch<true>(u, v), [=] { return Access::loadPart(pixels, left); }), left);
  }

private:
  [[nodiscard]] static Halves load(const void* p) {
    Halves pixels;
    __builtin_memcpy(&pixels, p, sizeof pixels);
    return pixels;
  }

  static void store(void* p, Halves pixels) { __builtin_memcpy(p, &pixels, sizeof pixels); }

  template <bool Limit>
  [[nodiscard]] Words texelOffsets(UnsignedWords u, UnsignedWords v) const {
    const auto column = reinterpret_cast<Words>(u) >> 16;
    const auto row = reinterpret_cast<UnsignedWords>(reinterpret_cast<Words>(v) >> 16)
                     << static_cast<std::uint32_t>(widthCode_);
    auto offset = reinterpret_cast<Words>(row + reinterpret_cast<UnsignedWords>(column + column));
    if constexpr (Limit) {
      const Words first = {};
      const Words last = first + lastTexel_;
      offset = offset > first ? offset : first;
      offset = offset < last ? offset : last;
    }
    return offset;
  }

  template <bool Limit>
  [[nodiscard]] Halves fetch(const Stepped& u, const Stepped& v) const {
    return Access::texels(texels_, texelOffsets<Limit>(u.even, v.even), texelOffsets<Limit>(u.odd(), v.odd()));
  }

  [[nodiscard]] static Halves shaded(Halves channel, Halves offset) {
    const Halves black = {};
    const Halves white = black + static_cast<std::int16_t>(channelMask);
    Halves sum = channel + offset;
    sum = sum > black ? sum : black;
    return sum < white ? sum : white;
  }

  [[nodiscard]] static Halves channelAt(Halves pixels, int shift) {
    return (pixels >> shift) & static_cast<std::int16_t>(channelMask);
  }

  /// Equal to (source * weight + target * (256 - weight)) >> 8.
  [[nodiscard]] Halves mix(Halves source, Halves target) const { return target + (((source - target) * weight_) >> 8); }

  template <typename LoadTarget>
  [[nodiscard]] Halves shadeBlock(Halves texels, LoadTarget loadTarget, Halves redOffset, Halves greenOffset,
                                  Halves blueOffset) const {
    Halves red = shaded(channelAt(texels, 10 + GreenShift), redOffset);
    Halves green = shaded(channelAt(texels, 5 + GreenShift), greenOffset);
    Halves blue = shaded(channelAt(texels, 0), blueOffset);
    if constexpr (Blended) {
      const Halves target = loadTarget();
      red = mix(red, channelAt(target, 10 + GreenShift));
      green = mix(green, channelAt(target, 5 + GreenShift));
      blue = mix(blue, channelAt(target, 0));
    }
    return red << (10 + GreenShift) | green << (5 + GreenShift) | blue | static_cast<std::int16_t>(1);
  }

  const std::uint8_t* texels_;
  std::int32_t widthCode_;
  std::int32_t lastTexel_;
  std::int16_t weight_;
};

}  // namespace

}  // namespace kx
