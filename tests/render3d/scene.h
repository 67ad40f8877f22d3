// A device on a bitmap with guarded memory and a texture with noise, for the tests of triangles.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kxgraphic/kxgraphic.h"
#include "support/random.h"

namespace kxtest {

/// The library's own tables.
BitmapMethods* bitmapMethods();
DeviceMethods* deviceMethods();

/// A 16-bit bitmap whose rows lie in memory of its own, with guard bytes before and behind. Where it is only read it
/// needs none: the address sanitizer then sees the ends of the memory.
class GuardedImage {
public:
  GuardedImage(std::uint32_t format, std::int32_t width, std::int32_t height, Random& random,
               std::size_t guardBytes = 64);

  Bitmap record = {};
  std::vector<std::uint8_t> bytes;  ///< guards included

  /// The same record over other bytes.
  Bitmap over(std::vector<std::uint8_t>& other) const;

private:
  std::size_t guardBytes_;
};

/// A device drawing into `target` (wholly) and a texture with one level.
class Scene {
public:
  Scene(std::uint32_t format, std::int32_t width, std::int32_t height, std::int32_t textureWidth,
        std::int32_t textureHeight, Random& random);

  GuardedImage target;
  GuardedImage level;
  Device3D device = {};
  Texture texture = {};
};

}  // namespace kxtest
