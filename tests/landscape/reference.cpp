// SPDX-License-Identifier: MIT
#include "landscape/reference.h"

namespace kxtest {

LandscapeOwner randomLandscape(std::mt19937& random, int width, int height, std::uint32_t colourLight) {
  static Device3D device{};
  Landscape* landscape = nullptr;
  if (LS_createLandscape(&landscape, &device, width, height, colourLight) != 0) return nullptr;
  const std::size_t cells = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  for (std::size_t i = 0; i < cells; ++i) {
    landscape->heightMap[i] = static_cast<std::uint8_t>(random());
    landscape->textureMap[i] = static_cast<std::uint16_t>(random());
  }
  for (std::size_t i = 0; i < cells * 3; ++i) landscape->lightMap[i] = static_cast<std::uint8_t>(random());
  return LandscapeOwner(landscape);
}

Rect cutRect(const Heights& map, Rect rect) {
  if (rect.w < 0) rect.w = map.width;
  if (rect.h < 0) rect.h = map.height;
  if (rect.x < 0) rect.w += rect.x, rect.x = 0;
  if (rect.y < 0) rect.h += rect.y, rect.y = 0;
  if (rect.x + rect.w > map.width - 1) rect.w = map.width - rect.x;
  if (rect.y + rect.h > map.height - 1) rect.h = map.height - rect.y;
  return rect;
}

void softenReference(Heights& map, const Rect& rect, const std::function<bool(int x, int y)>& inside) {
  if (rect.w < 2 || rect.h < 2) return;
  const Heights old = map;
  const int right = rect.x + rect.w - 1;
  const int bottom = rect.y + rect.h - 1;
  for (int y = rect.y + 1; y < bottom; ++y)
    for (int x = rect.x + 1; x < right; ++x) {
      if (!inside(x, y)) continue;
      int sum = 0;
      for (int j = -1; j <= 1; ++j)
        for (int i = -1; i <= 1; ++i) sum += old.at(x + i, y + j) * (i == 0 ? 3 : 1) * (j == 0 ? 3 : 1);
      map.at(x, y) = std::min(255, sum / 25);
    }
  for (int y = rect.y; y <= bottom; ++y) map.at(rect.x, y) = map.at(rect.x + 1, y);
  for (int y = rect.y; y <= bottom; ++y) map.at(right, y) = map.at(right - 1, y);
  for (int x = rect.x; x <= right; ++x) map.at(x, rect.y) = map.at(x, rect.y + 1);
  for (int x = rect.x; x <= right; ++x) map.at(x, bottom) = map.at(x, bottom - 1);
}

}  // namespace kxtest
