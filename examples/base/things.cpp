// Painters of things that stand in more than one picture.
// SPDX-License-Identifier: MIT
#include "paint.h"

namespace demo {

Pictures ellipse(int width, int height, std::uint32_t format, Tone tone) {
  return sprites(1, width, height, format, [&](int, int x, int y) {
    const double dy = place(y, height);
    return std::hypot(place(x, width), dy) < 1 ? pixelOf(format, lighter(tone, static_cast<int>(-dy * 20))) : 0U;
  });
}

/// Leaves are arcs that fall with the distance from the crown.
Pictures palms(int variants, std::uint32_t format) {
  constexpr int width = 40, height = 48, leaves = 9;
  constexpr double crownY = 17;
  return sprites(variants, width, height, format, [&](int variant, int x, int y) {
    const int lean = variant % 2 == 0 ? 6 : -7;
    const double fromCrown = x + 0.5 - width / 2.0 - lean;
    for (int i = 0; i < leaves; ++i) {
      const double direction = i * 2 * std::numbers::pi / leaves + variant;
      const double reach = 15 + (i * 5 + variant * 3) % 4;
      for (double along = 0; along < reach; along += 0.5) {
        const double leafY = crownY + std::sin(direction) * along * 0.45 - along * 0.35 + along * along * 0.05;
        const double thick = 2.3 * std::sin(std::numbers::pi * (0.12 + 0.86 * along / reach));
        if (std::abs(fromCrown - std::cos(direction) * along) < 1.2 && std::abs(y + 0.5 - leafY) < thick)
          return pixelOf(format, lighter({44, 128, 52}, static_cast<int>((leafY - y) * 16) + i % 3 * 12));
      }
    }
    const double part = (y - crownY) / (height - crownY);  // 0 at the crown, 1 at the foot
    const double across = fromCrown + lean * (2 - part) * part;
    if (part < 0 || std::abs(across) > 1.4 + part) return 0U;
    return pixelOf(format, lighter({150, 112, 72}, static_cast<int>(-across * 14) - (y % 4 == 0 ? 26 : 0)));
  });
}

Pictures rocks(int variants, std::uint32_t format) {
  return sprites(variants, 24, 18, format, [&](int variant, int x, int y) {
    const double dx = place(x, 24);
    const double top = 3 + dx * dx * dx * dx * 12 + std::sin(x * 0.8 + variant * 2) + std::sin(x * 0.37 + variant) * 2;
    const double down = std::max(0.0, (y - 11) / 7.0);
    if (y < top || dx * dx + down * down > 1) return 0U;
    const int light = static_cast<int>(44 - dx * 34 - (y - top) * 5) + grain(x / 2, y / 2 + variant) / 8 - 16;
    return pixelOf(format, lighter({120, 116, 122}, light));
  });
}

}  // namespace demo
