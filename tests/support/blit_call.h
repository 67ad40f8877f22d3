// Calling any of the thirty blits by its description, and what such a call is made of.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "kxgraphic/kxgraphic.h"

namespace kxtest {

enum class Rule { Copy, Transparent, Alpha, TransparentAlpha, Alphamap };
enum class Depth { None, ZBuffer, ZMap };
constexpr int ruleCount = 5, depthCount = 3;

struct BlitCall {
  bool stretch = false;
  Rule rule = Rule::Copy;
  Depth depth = Depth::None;
  Bitmap *dst = nullptr, *zbuffer = nullptr, *src = nullptr, *alphamap = nullptr, *zmap = nullptr;
  std::int32_t dx = 0, dy = 0, dw = 1, dh = 1, sx = 0, sy = 0, sw = 1, sh = 1;  ///< copies take dw and dh
  std::int32_t alpha = 0, z = 0, zoffset = 0;

  bool transparent() const { return rule == Rule::Transparent || rule == Rule::TransparentAlpha; }
  bool constantAlpha() const { return rule == Rule::Alpha || rule == Rule::TransparentAlpha; }
};

std::uint32_t callBlit(const BlitCall& call);

}  // namespace kxtest
