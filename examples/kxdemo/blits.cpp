// The sheet of blits: every way a source pixel meets the destination, on 16-bit pixels.
// SPDX-License-Identifier: MIT
#include <cstring>

#include "art.h"
#include "scene.h"

namespace demo {

namespace {

constexpr Rgb red{235, 60, 45};
constexpr Rgb blue{60, 130, 240};
constexpr Rgb yellow{250, 200, 40};
constexpr Rgb green{70, 200, 90};

void fillDepth(const Image& zBuffer) {
  std::memset(zBuffer->pixels, 255,
              static_cast<std::size_t>(zBuffer->pitch) * static_cast<std::size_t>(zBuffer->height));
}

void constantAlpha(Panels& panels, const Image& ball) {
  panels.next("Constant alpha: weights 0, 64, 128, 192 and 255\nKX_bltCopyTransparentAlpha");
  for (int i = 0; i < 5; ++i)
    KX_CHECK(KX_bltCopyTransparentAlpha(panels.target(), panels.x + 6 + i * 56, panels.y + 20 + i * 24, ball.get(), 0,
                                        0, 64, 64, std::min(255, i * 64)));
}

void sortedByDepth(Panels& panels, const Image& zBuffer) {
  panels.next("Depth: drawn in any order, sorted by the Z buffer\nKX_bltCopyTransparentZBuffer");
  constexpr Rgb colours[] = {red, blue, yellow, green};
  // Every second ball first: the Z buffer, not the order, decides what is in front.
  for (const int start : {0, 1})
    for (int i = start; i < 12; i += 2) {
      const Image ball = makeBall(36 + i * 5, KX_FORMAT_565, colours[i % 4]);
      KX_CHECK(KX_bltCopyTransparentZBuffer(panels.target(), zBuffer.get(), panels.x + i * 19, panels.y + 30 + i * 6,
                                            ball.get(), 0, 0, ball->width, ball->height, 200 - i * 10));
    }
}

void intersecting(Panels& panels, const Image& zBuffer) {
  panels.next("Relief: with a depth for each pixel balls cut each other\nKX_bltCopyTransparentZMap");
  constexpr int size = 128;
  const Image depth = makeBallDepth(size, 60);
  const Image balls[] = {makeBall(size, KX_FORMAT_565, red), makeBall(size, KX_FORMAT_565, blue),
                         makeBall(size, KX_FORMAT_565, yellow)};
  const int places[][3] = {{20, 40, 0}, {92, 30, 14}, {150, 60, 4}};
  for (std::size_t i = 0; i < std::size(balls); ++i)
    KX_CHECK(KX_bltCopyTransparentZMap(panels.target(), zBuffer.get(), panels.x + places[i][0], panels.y + places[i][1],
                                       balls[i].get(), 0, 0, size, size, depth.get(), places[i][2]));
}

void packedAndPlain(Panels& panels, const Image& ball) {
  const Image packed = converted(ball, KX_FORMAT_565 | KX_STORAGE_PACKED);
  std::uint32_t plainSize = 0;
  std::uint32_t packedSize = 0;
  KX_CHECK(KX_getBitmapSize(ball.get(), &plainSize));
  KX_CHECK(KX_getBitmapSize(packed.get(), &packedSize));
  panels.next("Plain (" + std::to_string(plainSize) + " bytes) and packed (" + std::to_string(packedSize) +
              "): the same pixels\nKX_bltCopyTransparent");
  for (int i = 0; i < 2; ++i)
    KX_CHECK(KX_bltCopyTransparent(panels.target(), panels.x + 50 + i * 110, panels.y + 56,
                                   (i == 0 ? ball : packed).get(), 0, 0, ball->width, ball->height));
}

void stretches(Panels& panels, const Image& ball, const Image& picture) {
  panels.next("Stretched up and down without filtering\nKX_bltStretch, KX_bltStretchTransparent");
  int x = panels.x + 6;
  for (int width = 144; width >= 18; width /= 2) {
    KX_CHECK(KX_bltStretch(panels.target(), x, panels.y + 8, width, width * 3 / 4, picture.get(), 0, 0, picture->width,
                           picture->height));
    x += width + 4;
  }
  x = panels.x + 6;
  for (int size = 16; size <= 76; size += 20) {
    KX_CHECK(KX_bltStretchTransparent(panels.target(), x, panels.y + 194 - size, size + 20, size, ball.get(), 0, 0,
                                      ball->width, ball->height));
    x += size + 26;
  }
}

}  // namespace

Image drawBlits(const Material& material) {
  Panels panels(9, 3, KX_FORMAT_565, "Copy and stretch blits on 16-bit pixels");
  const Image ball = makeBall(64, KX_FORMAT_565, yellow);
  const Image zBuffer = makeImage(panels.target()->width, panels.target()->height, KX_FORMAT_GREY);
  fillDepth(zBuffer);

  panels.next("Transparency: source pixels of value 0 are skipped\nKX_bltCopyTransparent");
  panels.cover(material.picture);
  for (int i = 0; i < 6; ++i)
    KX_CHECK(KX_bltCopyTransparent(panels.target(), panels.x + 4 + i * 45, panels.y + 12 + i % 3 * 56, ball.get(), 0, 0,
                                   64, 64));

  constantAlpha(panels, makeBall(64, KX_FORMAT_565, blue));

  panels.next("Alpha map: a weight for each pixel, here a soft edge\nKX_bltCopyAlphamap");
  const Image cut = makeImage(Panels::width, Panels::height, KX_FORMAT_565);
  KX_CHECK(KX_bltStretch(cut.get(), 0, 0, Panels::width, Panels::height, material.picture.get(), 0, 0,
                         material.picture->width, material.picture->height));
  const Image weights = makeSoftDisc(Panels::width, Panels::height);
  KX_CHECK(KX_bltCopyAlphamap(panels.target(), panels.x, panels.y, cut.get(), 0, 0, Panels::width, Panels::height,
                              weights.get()));

  sortedByDepth(panels, zBuffer);
  intersecting(panels, zBuffer);

  panels.next("Glass: half transparent, and cut by the same depths\nKX_bltCopyTransparentAlphaZMap");
  panels.cover(material.picture);
  const Image depth = makeBallDepth(128, 60);
  const Image glass[] = {makeBall(128, KX_FORMAT_565, green), makeBall(128, KX_FORMAT_565, red)};
  for (int i = 0; i < 2; ++i)
    KX_CHECK(KX_bltCopyTransparentAlphaZMap(panels.target(), zBuffer.get(), panels.x + 48 + i * 80,
                                            panels.y + 40 - i * 8, glass[i].get(), 0, 0, 128, 128, i == 0 ? 90 : 140,
                                            depth.get(), i * 6));

  stretches(panels, ball, material.picture);

  panels.next("8-bit sprites, each with a palette of its own\nKX_setPaletteReference, KX_bltCopyTransparent");
  constexpr Rgb colours[] = {red, yellow, green, blue, {200, 90, 220}, {230, 230, 235}};
  for (int i = 0; i < 6; ++i)
    KX_CHECK(KX_bltCopyTransparent(panels.target(), panels.x + 12 + i % 3 * 96, panels.y + 14 + i / 3 * 92,
                                   IndexedBall(84, colours[i]).bitmap(), 0, 0, 84, 84));

  packedAndPlain(panels, makeBall(88, KX_FORMAT_565, green));
  return panels.take();
}

}  // namespace demo
