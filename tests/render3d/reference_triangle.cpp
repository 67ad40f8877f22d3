// The plain triangle.
// SPDX-License-Identifier: MIT
#include "render3d/reference_triangle.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace kxtest {

namespace {

using Wide = std::int64_t;

struct Corner {
  Wide value[6];  ///< x, u, v, red, green, blue, all 16.16
  Wide y;
};

struct Side {
  Corner from, to;
  [[nodiscard]] Wide rows() const { return to.y - from.y + 1; }
  [[nodiscard]] Wide step(int i) const { return (to.value[i] - from.value[i]) / rows(); }
  [[nodiscard]] Wide at(Wide row, int i) const { return from.value[i] + row * step(i); }
};

Wide signedByte(std::uint32_t word, int index) {
  const Wide byte = (word >> (8 * index)) & 0xFF;
  return (byte >= 128 ? byte - 256 : byte) & ~Wide{7};
}

Corner corner(Wide x, Wide y, Wide u, Wide v, std::uint32_t shade) {
  const Wide one = 65536;
  return {
      {x * one, u * one, v * one, signedByte(shade, 2) << 23, signedByte(shade, 1) << 18, signedByte(shade, 0) << 13},
      y};
}

Wide limited(Wide value) { return std::clamp<Wide>(value, -32767, 32767); }

Wide whole(float field, bool nearest) {
  if (std::isnan(field)) return 0;
  const double value = std::clamp(static_cast<double>(field), -32767.0, 32767.0);
  return static_cast<Wide>(nearest ? std::nearbyint(value) : std::trunc(value));
}

std::uint32_t read16(const std::uint8_t* p) { return p[0] | static_cast<std::uint32_t>(p[1]) << 8; }

void shadePixel(const ReferenceTriangle& t, Wide x, Wide y, const Wide (&value)[6]) {
  const Bitmap& level = *t.texture->levels[0];
  const Wide lastTexel = Wide{level.pitch} * level.height - 2;
  const Wide address = ((value[2] >> 16) << t.texture->widthCodes[0]) + (value[1] >> 16) * 2;
  const std::uint32_t texel = read16(level.pixels + std::clamp<Wide>(address, 0, lastTexel));
  std::uint8_t* out = t.target->pixels + y * t.target->pitch + 2 * x;
  const std::uint32_t under = read16(out);
  const int shift = (t.target->format & 15) == 6 ? 1 : 0;
  const Wide mask[3] = {0x7C00, 0x03E0, 0x001F};
  Wide lane[3] = {(texel >> shift) & 0x7C00, (texel >> shift) & 0x03E0, texel & 0x001F};
  const Wide underLane[3] = {(under >> shift) & 0x7C00, (under >> shift) & 0x03E0, under & 0x001F};
  const Wide oneStep[3] = {0x400, 0x20, 0};
  for (int i = 0; i < 3; ++i) {
    Wide sum = std::clamp<Wide>(lane[i] + (value[3 + i] >> 16), -32768, 32767);
    if (sum < oneStep[i]) sum = 0;
    if (sum > mask[i]) sum = mask[i];
    lane[i] = sum & mask[i];
    if (t.alpha >= 0) lane[i] = ((lane[i] * (256 - t.alpha) + underLane[i] * t.alpha) >> 8) & mask[i];
  }
  const Wide pixel = (lane[0] << shift) | (lane[1] << shift) | lane[2] | 1;
  out[0] = static_cast<std::uint8_t>(pixel);
  out[1] = static_cast<std::uint8_t>(pixel >> 8);
}

void drawRow(const ReferenceTriangle& t, Wide y, const Wide (&left)[6], const Wide (&right)[6]) {
  const Wide first = left[0] >> 16;
  const Wide length = ((right[0] - left[0]) >> 16) + 1;
  for (Wide i = 0; i < length; ++i) {
    if (first + i < t.clipLeft || first + i > t.clipRight) continue;
    Wide value[6];
    for (int k = 0; k < 6; ++k) value[k] = left[k] + i * ((right[k] - left[k]) / length);
    shadePixel(t, first + i, y, value);
  }
}

void drawCorners(const ReferenceTriangle& t, const Corner (&c)[3]) {
  int top = c[0].y <= c[1].y ? 0 : 1;
  if (c[top].y > c[2].y) top = 2;
  int a = (top + 1) % 3;
  int b = (top + 2) % 3;
  if (c[a].y > c[b].y) std::swap(a, b);
  Side left, right;
  const Side lower = {c[a], c[b]};
  if (c[top].y != c[a].y) {
    left = {c[top], c[a]};
    right = {c[top], c[b]};
    if (right.step(0) < left.step(0)) std::swap(left, right);
  } else {
    if (c[top].y == c[b].y || c[top].value[0] == c[a].value[0]) return;
    if (c[top].value[0] > c[a].value[0]) std::swap(top, a);
    left = {c[top], c[b]};
    right = {c[a], c[b]};
  }
  const Wide rows = std::max(left.rows(), right.rows());
  for (Wide row = 0; row < rows; ++row) {
    const Wide y = c[top].y + row;
    if (y < t.clipTop || y > t.clipBottom) continue;
    Wide l[6], r[6];
    for (int i = 0; i < 6; ++i) {
      l[i] = row < left.rows() ? left.at(row, i) : lower.at(row - left.rows(), i);
      r[i] = row < right.rows() ? right.at(row, i) : lower.at(row - right.rows(), i);
    }
    drawRow(t, y, l, r);
  }
}

}  // namespace

void drawReference(const ReferenceTriangle& t, const VertexFloat (&vertices)[3]) {
  bool inside = true;
  for (const VertexFloat& v : vertices) {
    const Wide x = whole(v.x, true);
    inside = inside && x >= t.clipLeft && x <= t.clipRight;
  }
  Corner corners[3];
  for (int i = 0; i < 3; ++i) {
    const VertexFloat& v = vertices[i];
    corners[i] = corner(whole(v.x, inside), whole(v.y, inside), whole(v.u, inside), whole(v.v, inside), v.shade);
  }
  drawCorners(t, corners);
}

void drawReference(const ReferenceTriangle& t, const VertexInt (&vertices)[3]) {
  Corner corners[3];
  for (int i = 0; i < 3; ++i) {
    const VertexInt& v = vertices[i];
    corners[i] = corner(limited(v.x), limited(v.y), limited(v.u), limited(v.v), v.shade);
  }
  drawCorners(t, corners);
}

}  // namespace kxtest
