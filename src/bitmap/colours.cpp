// Colour values and their channels, and images with an alpha plane of their own.
// SPDX-License-Identifier: MIT
#include "frame/checks.h"
#include "kxgraphic/bitmap.h"
#include "pixel/channels.h"
#include "pixel/memory.h"

namespace kx {

namespace {

/// Splits a row of 4-byte pixels. Four at a time: their colours fill three words, their alphas one.
void splitAlpha(std::uint8_t* colours, std::uint8_t* alpha, const std::uint8_t* src, std::int32_t width) {
  std::int32_t left = width;
  for (; left >= 4; left -= 4, src += 16, colours += 12, alpha += 4) {
    const std::uint32_t p0 = load32(src), p1 = load32(src + 4), p2 = load32(src + 8), p3 = load32(src + 12);
    store32(colours, (p0 & 0xFFFFFF) | p1 << 24);
    store32(colours + 4, (p1 >> 8 & 0xFFFF) | p2 << 16);
    store32(colours + 8, (p2 >> 16 & 0xFF) | p3 << 8);
    store32(alpha, p0 >> 24 | (p1 >> 24) << 8 | (p2 >> 24) << 16 | (p3 >> 24) << 24);
  }
  for (; left > 0; --left, src += 4, colours += 3) {
    store24(colours, load24(src));
    *alpha++ = src[3];
  }
}

/// Joins a row of 3-byte pixels with its alphas.
void joinAlpha(std::uint8_t* dst, const std::uint8_t* colours, const std::uint8_t* alpha, std::int32_t width) {
  std::int32_t left = width;
  for (; left >= 4; left -= 4, colours += 12, alpha += 4, dst += 16) {
    const std::uint32_t w0 = load32(colours), w1 = load32(colours + 4), w2 = load32(colours + 8), a = load32(alpha);
    store32(dst, (w0 & 0xFFFFFF) | a << 24);
    store32(dst + 4, w0 >> 24 | (w1 & 0xFFFF) << 8 | (a & 0xFF00) << 16);
    store32(dst + 8, w1 >> 16 | (w2 & 0xFF) << 16 | (a & 0xFF0000) << 8);
    store32(dst + 12, w2 >> 8 | (a & 0xFF000000));
  }
  for (; left > 0; --left, colours += 3, dst += 4) {
    store24(dst, load24(colours));
    dst[3] = *alpha++;
  }
}

template <typename... Sizes>
bool allPositive(Sizes... sizes) {
  return ((sizes > 0) && ...);
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL KX_toRGB(std::uint32_t format, std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
  return kx::fromChannels(format, red, green, blue);
}

std::uint32_t KX_CALL KX_toRed(std::uint32_t format, std::uint32_t value) { return kx::toChannels(format, value).r; }

std::uint32_t KX_CALL KX_toGreen(std::uint32_t format, std::uint32_t value) { return kx::toChannels(format, value).g; }

std::uint32_t KX_CALL KX_toBlue(std::uint32_t format, std::uint32_t value) { return kx::toChannels(format, value).b; }

std::uint32_t KX_CALL KX_convert32RGBA(std::uint8_t* dst, std::int32_t dstPitch, std::uint8_t* alpha,
                                       std::int32_t alphaPitch, std::uint8_t* src, std::int32_t width,
                                       std::int32_t height, std::int32_t srcPitch) {
  if (kx::checkWritable(dst, alpha, src) != kx::Result::Ok ||
      !kx::allPositive(dstPitch, srcPitch, alphaPitch, width, height))
    return kx::toCode(kx::Result::IllegalParameter);
  for (std::int32_t y = 0; y < height; ++y, dst += dstPitch, alpha += alphaPitch, src += srcPitch)
    kx::splitAlpha(dst, alpha, src, width);
  return kx::toCode(kx::Result::Ok);
}

std::uint32_t KX_CALL KX_convertTo32RGBA(std::uint8_t* dst, std::int32_t dstPitch, std::uint8_t* src,
                                         std::int32_t srcPitch, std::uint8_t* alpha, std::int32_t alphaPitch,
                                         std::int32_t width, std::int32_t height) {
  if (kx::checkWritable(dst, alpha, src) != kx::Result::Ok ||
      !kx::allPositive(dstPitch, srcPitch, alphaPitch, width, height))
    return kx::toCode(kx::Result::IllegalParameter);
  for (std::int32_t y = 0; y < height; ++y, dst += dstPitch, alpha += alphaPitch, src += srcPitch)
    kx::joinAlpha(dst, src, alpha, width);
  return kx::toCode(kx::Result::Ok);
}
