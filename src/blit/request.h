// What an entry point asks for: its variant and its arguments, by name.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "frame/result.h"
#include "kxgraphic/types.h"

namespace kx {

/// How a source pixel is combined with the destination pixel.
enum class BlitRule : std::uint8_t { Copy, Transparent, Alpha, TransparentAlpha, Alphamap };

/// The depth test.
enum class BlitDepth : std::uint8_t { None, ZBuffer, ZMap };

/// One of the fifteen members of a family.
struct Variant {
  BlitRule rule;
  BlitDepth depth;

  [[nodiscard]] constexpr bool transparent() const {
    return rule == BlitRule::Transparent || rule == BlitRule::TransparentAlpha;
  }
  [[nodiscard]] constexpr bool alpha() const { return rule == BlitRule::Alpha || rule == BlitRule::TransparentAlpha; }
  [[nodiscard]] constexpr bool alphamap() const { return rule == BlitRule::Alphamap; }
  [[nodiscard]] constexpr bool blends() const { return alpha() || alphamap(); }
  [[nodiscard]] constexpr bool zBuffer() const { return depth != BlitDepth::None; }
  [[nodiscard]] constexpr bool zMap() const { return depth == BlitDepth::ZMap; }
  /// Uses a Z buffer or maps.
  [[nodiscard]] constexpr bool others() const { return zBuffer() || alphamap(); }

  friend constexpr bool operator==(Variant, Variant) = default;
};

/// Left, top, width and height in pixels.
struct Rect {
  std::int32_t x, y, w, h;
};

/// Everything the caller passed; members that the variant does not use stay null or 0.
struct BlitRequest {
  Variant variant;
  Bitmap* dst;
  Rect to;
  Bitmap* src;
  Rect from;
  std::int32_t alpha = 0;      ///< weight of the destination, 0 to 255
  Bitmap* alphamap = nullptr;  ///< weights, addressed at the source position
  Bitmap* zBuffer = nullptr;   ///< depths, addressed at the destination position
  std::int32_t z = 0;          ///< depth of all pixels, 0 to 255, or the offset to the Z map
  Bitmap* zMap = nullptr;      ///< depths, addressed at the source position
};

struct FamilyRules;

/// The whole blit: checks, locks, drawing, unlocks.
Result blit(const FamilyRules& family, const BlitRequest& request);

}  // namespace kx
