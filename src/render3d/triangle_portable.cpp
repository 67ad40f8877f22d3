// Triangle spans one pixel at a time.
// SPDX-License-Identifier: MIT
#include "pixel/memory.h"
#include "render3d/triangle_rows.h"

namespace kx {

namespace {

struct Channels {
  std::int32_t red, green, blue;  ///< 0 to 31
};

/// Settled: the lowest bit of a 5-6-5 green counts for nothing.
template <int GreenShift>
Channels split(std::int32_t pixel) {
  return {(pixel >> (10 + GreenShift)) & channelMask, (pixel >> (5 + GreenShift)) & channelMask, pixel & channelMask};
}

/// Settled: bit 0 is set in every pixel drawn, so that none has the value 0, which blits skip.
template <int GreenShift>
std::uint32_t pack(const Channels& channels) {
  return static_cast<std::uint32_t>(channels.red << (10 + GreenShift) | channels.green << (5 + GreenShift) |
                                    channels.blue | 1);
}

inline std::int32_t shaded(std::int32_t channel, std::int32_t offset) {
  return lesser(greater(channel + offset, 0), channelMask);
}

template <int GreenShift, bool Blended, bool Limited>
class ScalarFiller {
public:
  explicit ScalarFiller(const TriangleJob& job) : job_(job) {}

  void operator()(const TriangleSpan& span) const {
    std::int32_t u = span.at[laneU], v = span.at[laneV];
    std::int32_t red = span.at[laneRed], green = span.at[laneGreen], blue = span.at[laneBlue];
    std::uint8_t* pixel = span.pixels;
    for (std::int32_t left = span.count;;) {
      Channels out = split<GreenShift>(load16(job_.texels + texelOffset(u, v)));
      out.red = shaded(out.red, red >> redStepBits);
      out.green = shaded(out.green, green >> greenStepBits);
      out.blue = shaded(out.blue, blue >> blueStepBits);
      if constexpr (Blended) {
        const Channels target = split<GreenShift>(load16(pixel));
        out.red = mix(out.red, target.red);
        out.green = mix(out.green, target.green);
        out.blue = mix(out.blue, target.blue);
      }
      store16(pixel, pack<GreenShift>(out));
      // One step more than there are pixels could leave the range of the numbers.
      if (--left == 0) break;
      pixel += 2;
      u += span.step[laneU];
      v += span.step[laneV];
      red += span.step[laneRed];
      green += span.step[laneGreen];
      blue += span.step[laneBlue];
    }
  }

private:
  [[nodiscard]] std::int32_t texelOffset(std::int32_t u, std::int32_t v) const {
    const auto row = static_cast<std::uint32_t>(v >> 16) << job_.widthCode;
    const auto offset = static_cast<std::int32_t>(row + static_cast<std::uint32_t>(u >> 16) * 2);
    if constexpr (Limited) return lesser(greater(offset, 0), job_.lastTexel);
    return offset;
  }

  [[nodiscard]] std::int32_t mix(std::int32_t source, std::int32_t target) const {
    return (source * (256 - job_.alpha) + target * job_.alpha) >> 8;
  }

  const TriangleJob& job_;
};

}  // namespace

TriangleKernels triangleKernelsPortable() { return makeTriangleKernels<ScalarFiller>(); }

}  // namespace kx
