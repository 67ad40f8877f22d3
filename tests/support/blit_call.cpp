// SPDX-License-Identifier: MIT
#include "support/blit_call.h"

namespace kxtest {

namespace {

/// The extras of each variant, behind the geometry.
template <typename Plain, typename ZBuffer, typename ZMap, typename... Extras>
std::uint32_t dispatch(const BlitCall& c, Plain plain, ZBuffer zBuffer, ZMap zMap, Extras... extras) {
  const auto call = [&](auto function, auto... tail) {
    if constexpr (sizeof...(tail) == sizeof...(Extras))
      return c.stretch ? function.stretch(c.dst, c.dx, c.dy, c.dw, c.dh, c.src, c.sx, c.sy, c.sw, c.sh, tail...)
                       : function.copy(c.dst, c.dx, c.dy, c.src, c.sx, c.sy, c.dw, c.dh, tail...);
    else
      return c.stretch
                 ? function.stretch(c.dst, c.zbuffer, c.dx, c.dy, c.dw, c.dh, c.src, c.sx, c.sy, c.sw, c.sh, tail...)
                 : function.copy(c.dst, c.zbuffer, c.dx, c.dy, c.src, c.sx, c.sy, c.dw, c.dh, tail...);
  };
  if (c.depth == Depth::ZBuffer) return call(zBuffer, extras..., c.z);
  if (c.depth == Depth::ZMap) return call(zMap, extras..., c.zmap, c.zoffset);
  return call(plain, extras...);
}

template <typename Copy, typename Stretch>
struct Pair {
  Copy copy;
  Stretch stretch;
};
template <typename Copy, typename Stretch>
Pair(Copy, Stretch) -> Pair<Copy, Stretch>;

}  // namespace

std::uint32_t callBlit(const BlitCall& c) {
  switch (c.rule) {
    case Rule::Copy:
      return dispatch(c, Pair{KX_bltCopy, KX_bltStretch}, Pair{KX_bltCopyZBuffer, KX_bltStretchZBuffer},
                      Pair{KX_bltCopyZMap, KX_bltStretchZMap});
    case Rule::Transparent:
      return dispatch(c, Pair{KX_bltCopyTransparent, KX_bltStretchTransparent},
                      Pair{KX_bltCopyTransparentZBuffer, KX_bltStretchTransparentZBuffer},
                      Pair{KX_bltCopyTransparentZMap, KX_bltStretchTransparentZMap});
    case Rule::Alpha:
      return dispatch(c, Pair{KX_bltCopyAlpha, KX_bltStretchAlpha},
                      Pair{KX_bltCopyAlphaZBuffer, KX_bltStretchAlphaZBuffer},
                      Pair{KX_bltCopyAlphaZMap, KX_bltStretchAlphaZMap}, c.alpha);
    case Rule::TransparentAlpha:
      return dispatch(c, Pair{KX_bltCopyTransparentAlpha, KX_bltStretchTransparentAlpha},
                      Pair{KX_bltCopyTransparentAlphaZBuffer, KX_bltStretchTransparentAlphaZBuffer},
                      Pair{KX_bltCopyTransparentAlphaZMap, KX_bltStretchTransparentAlphaZMap}, c.alpha);
    case Rule::Alphamap:
      return dispatch(c, Pair{KX_bltCopyAlphamap, KX_bltStretchAlphamap},
                      Pair{KX_bltCopyAlphamapZBuffer, KX_bltStretchAlphamapZBuffer},
                      Pair{KX_bltCopyAlphamapZMap, KX_bltStretchAlphamapZMap}, c.alphamap);
  }
  return ~0u;
}

}  // namespace kxtest
