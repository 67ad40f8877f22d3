// SPDX-License-Identifier: MIT
#include "paint.h"

namespace demo {

namespace {

/// `blit(left, top, width, height, to)` draws what is left of an image on the target.
template <typename Blit>
void cut(const Bitmap* target, Point at, const Bitmap* image, Blit blit) {
  int left = 0;
  int top = 0;
  int width = image->width;
  int height = image->height;
  if (KX_clipTwoRects(0, 0, width - 1, height - 1, &left, &top, &width, &height, 0, 0, target->width - 1,
                      target->height - 1, &at.x, &at.y) != 0)
    check(blit(left, top, width, height, at), "a blit");
}

}  // namespace

void stamp(Bitmap* target, Point at, const Image& image) {
  cut(target, at, image.get(), [&](int left, int top, int width, int height, Point to) {
    return KX_bltCopyTransparent(target, to.x, to.y, image.get(), left, top, width, height);
  });
}

void stampAlpha(Bitmap* target, Point at, const Image& image, int alpha) {
  cut(target, at, image.get(), [&](int left, int top, int width, int height, Point to) {
    return KX_bltCopyTransparentAlpha(target, to.x, to.y, image.get(), left, top, width, height, alpha);
  });
}

void stampDepth(Bitmap* target, Bitmap* zBuffer, Point at, const Image& image, int depth) {
  cut(target, at, image.get(), [&](int left, int top, int width, int height, Point to) {
    return KX_bltCopyTransparentZBuffer(target, zBuffer, to.x, to.y, image.get(), left, top, width, height, depth);
  });
}

}  // namespace demo
