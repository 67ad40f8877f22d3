// Devices, targets and textures for the tests of triangles.
// SPDX-License-Identifier: MIT
#include "render3d/scene.h"

namespace kxtest {

BitmapMethods* bitmapMethods() {
  static BitmapMethods methods;
  static const bool filled = KX_getBitmapInterface(&methods, nullptr, nullptr, 0) != 0;
  return filled ? &methods : nullptr;
}

DeviceMethods* deviceMethods() {
  static DeviceMethods methods;
  static const bool filled = KX_get3DDeviceInterface(&methods, nullptr, nullptr, 0) != 0;
  return filled ? &methods : nullptr;
}

GuardedImage::GuardedImage(std::uint32_t format, std::int32_t width, std::int32_t height, Random& random,
                           std::size_t guardBytes)
    : guardBytes_(guardBytes) {
  record.methods = bitmapMethods();
  record.version = 0x10000;
  record.width = width;
  record.height = height;
  record.format = format;
  record.pitch = (2 * width + 3) & ~3;
  bytes.resize(static_cast<std::size_t>(record.pitch) * static_cast<std::size_t>(height) + 2 * guardBytes);
  random.fill(bytes);
  record.pixels = bytes.data() + guardBytes;
}

Bitmap GuardedImage::over(std::vector<std::uint8_t>& other) const {
  Bitmap copy = record;
  copy.pixels = other.data() + guardBytes_;
  return copy;
}

Scene::Scene(std::uint32_t format, std::int32_t width, std::int32_t height, std::int32_t textureWidth,
             std::int32_t textureHeight, Random& random)
    : target(format, width, height, random), level(format, textureWidth, textureHeight, random, 0) {
  device.methods = deviceMethods();
  device.version = 0x10000;
  device.clipRight = width - 1;
  device.clipBottom = height - 1;
  device.target = &target.record;
  texture.device = &device;
  texture.levels[0] = &level.record;
  texture.levelCount = 1;
  for (std::int32_t w = textureWidth; w > 0; w >>= 1) ++texture.widthCodes[0];
}

}  // namespace kxtest
