// The fifteen copy blits: each names its variant and its arguments.
// SPDX-License-Identifier: MIT
#include "blit/families.h"
#include "kxgraphic/blit.h"

using kx::blit;
using kx::BlitDepth;
using kx::BlitRule;
using kx::copyFamily;
using kx::toCode;

std::uint32_t KX_CALL KX_bltCopy(Bitmap* dst, std::int32_t dx, std::int32_t dy, Bitmap* src, std::int32_t sx,
                                 std::int32_t sy, std::int32_t w, std::int32_t h) {
  return toCode(blit(copyFamily, {.variant = {BlitRule::Copy, BlitDepth::None},
                                  .dst = dst,
                                  .to = {dx, dy, w, h},
                                  .src = src,
                                  .from = {sx, sy, w, h}}));
}

std::uint32_t KX_CALL KX_bltCopyTransparent(Bitmap* dst, std::int32_t dx, std::int32_t dy, Bitmap* src, std::int32_t sx,
                                            std::int32_t sy, std::int32_t w, std::int32_t h) {
  return toCode(blit(copyFamily, {.variant = {BlitRule::Transparent, BlitDepth::None},
                                  .dst = dst,
                                  .to = {dx, dy, w, h},
                                  .src = src,
                                  .from = {sx, sy, w, h}}));
}

std::uint32_t KX_CALL KX_bltCopyAlpha(Bitmap* dst, std::int32_t dx, std::int32_t dy, Bitmap* src, std::int32_t sx,
                                      std::int32_t sy, std::int32_t w, std::int32_t h, std::int32_t alpha) {
  return toCode(blit(copyFamily, {.variant = {BlitRule::Alpha, BlitDepth::None},
                                  .dst = dst,
                                  .to = {dx, dy, w, h},
                                  .src = src,
                                  .from = {sx, sy, w, h},
                                  .alpha = alpha}));
}

std::uint32_t KX_CALL KX_bltCopyTransparentAlpha(Bitmap* dst, std::int32_t dx, std::int32_t dy, Bitmap* src,
                                                 std::int32_t sx, std::int32_t sy, std::int32_t w, std::int32_t h,
                                                 std::int32_t alpha) {
  return toCode(blit(copyFamily, {.variant = {BlitRule::TransparentAlpha, BlitDepth::None},
                                  .dst = dst,
                                  .to = {dx, dy, w, h},
                                  .src = src,
                                  .from = {sx, sy, w, h},
                                  .alpha = alpha}));
}

std::uint32_t KX_CALL KX_bltCopyAlphamap(Bitmap* dst, std::int32_t dx, std::int32_t dy, Bitmap* src, std::int32_t sx,
                                         std::int32_t sy, std::int32_t w, std::int32_t h, Bitmap* alphamap) {
  return toCode(blit(copyFamily, {.variant = {BlitRule::Alphamap, BlitDepth::None},
                                  .dst = dst,
                                  .to = {dx, dy, w, h},
                                  .src = src,
                                  .from = {sx, sy, w, h},
                                  .alphamap = alphamap}));
}

std::uint32_t KX_CALL KX_bltCopyZBuffer(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx, std::int32_t dy, Bitmap* src,
                                        std::int32_t sx, std::int32_t sy, std::int32_t w, std::int32_t h,
                                        std::int32_t z) {
  return toCode(blit(copyFamily, {.variant = {BlitRule::Copy, BlitDepth::ZBuffer},
                                  .dst = dst,
                                  .to = {dx, dy, w, h},
                                  .src = src,
                                  .from = {sx, sy, w, h},
                                  .zBuffer = zbuffer,
                                  .z = z}));
}

std::uint32_t KX_CALL KX_bltCopyTransparentZBuffer(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx, std::int32_t dy,
                                                   Bitmap* src, std::int32_t sx, std::int32_t sy, std::int32_t w,
                                                   std::int32_t h, std::int32_t z) {
  return toCode(blit(copyFamily, {.variant = {BlitRule::Transparent, BlitDepth::ZBuffer},
                                  .dst = dst,
                                  .to = {dx, dy, w, h},
                                  .src = src,
                                  .from = {sx, sy, w, h},
                                  .zBuffer = zbuffer,
                                  .z = z}));
}

std::uint32_t KX_CALL KX_bltCopyAlphaZBuffer(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx, std::int32_t dy,
                                             Bitmap* src, std::int32_t sx, std::int32_t sy, std::int32_t w,
                                             std::int32_t h, std::int32_t alpha, std::int32_t z) {
  return toCode(blit(copyFamily, {.variant = {BlitRule::Alpha, BlitDepth::ZBuffer},
                                  .dst = dst,
                                  .to = {dx, dy, w, h},
                                  .src = src,
                                  .from = {sx, sy, w, h},
                                  .alpha = alpha,
                                  .zBuffer = zbuffer,
                                  .z = z}));
}

std::uint32_t KX_CALL KX_bltCopyTransparentAlphaZBuffer(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx, std::int32_t dy,
                                                        Bitmap* src, std::int32_t sx, std::int32_t sy, std::int32_t w,
                                                        std::int32_t h, std::int32_t alpha, std::int32_t z) {
  return toCode(blit(copyFamily, {.variant = {BlitRule::TransparentAlpha, BlitDepth::ZBuffer},
                                  .dst = dst,
                                  .to = {dx, dy, w, h},
                                  .src = src,
                                  .from = {sx, sy, w, h},
                                  .alpha = alpha,
                                  .zBuffer = zbuffer,
                                  .z = z}));
}

std::uint32_t KX_CALL KX_bltCopyAlphamapZBuffer(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx, std::int32_t dy,
                                                Bitmap* src, std::int32_t sx, std::int32_t sy, std::int32_t w,
                                                std::int32_t h, Bitmap* alphamap, std::int32_t z) {
  return toCode(blit(copyFamily, {.variant = {BlitRule::Alphamap, BlitDepth::ZBuffer},
                                  .dst = dst,
                                  .to = {dx, dy, w, h},
                                  .src = src,
                                  .from = {sx, sy, w, h},
                                  .alphamap = alphamap,
                                  .zBuffer = zbuffer,
                                  .z = z}));
}

std::uint32_t KX_CALL KX_bltCopyZMap(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx, std::int32_t dy, Bitmap* src,
                                     std::int32_t sx, std::int32_t sy, std::int32_t w, std::int32_t h, Bitmap* zmap,
                                     std::int32_t zoffset) {
  return toCode(blit(copyFamily, {.variant = {BlitRule::Copy, BlitDepth::ZMap},
                                  .dst = dst,
                                  .to = {dx, dy, w, h},
                                  .src = src,
                                  .from = {sx, sy, w, h},
                                  .zBuffer = zbuffer,
                                  .z = zoffset,
                                  .zMap = zmap}));
}

std::uint32_t KX_CALL KX_bltCopyTransparentZMap(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx, std::int32_t dy,
                                                Bitmap* src, std::int32_t sx, std::int32_t sy, std::int32_t w,
                                                std::int32_t h, Bitmap* zmap, std::int32_t zoffset) {
  return toCode(blit(copyFamily, {.variant = {BlitRule::Transparent, BlitDepth::ZMap},
                                  .dst = dst,
                                  .to = {dx, dy, w, h},
                                  .src = src,
                                  .from = {sx, sy, w, h},
                                  .zBuffer = zbuffer,
                                  .z = zoffset,
                                  .zMap = zmap}));
}

std::uint32_t KX_CALL KX_bltCopyAlphaZMap(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx, std::int32_t dy, Bitmap* src,
                                          std::int32_t sx, std::int32_t sy, std::int32_t w, std::int32_t h,
                                          std::int32_t alpha, Bitmap* zmap, std::int32_t zoffset) {
  return toCode(blit(copyFamily, {.variant = {BlitRule::Alpha, BlitDepth::ZMap},
                                  .dst = dst,
                                  .to = {dx, dy, w, h},
                                  .src = src,
                                  .from = {sx, sy, w, h},
                                  .alpha = alpha,
                                  .zBuffer = zbuffer,
                                  .z = zoffset,
                                  .zMap = zmap}));
}

std::uint32_t KX_CALL KX_bltCopyTransparentAlphaZMap(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx, std::int32_t dy,
                                                     Bitmap* src, std::int32_t sx, std::int32_t sy, std::int32_t w,
                                                     std::int32_t h, std::int32_t alpha, Bitmap* zmap,
                                                     std::int32_t zoffset) {
  return toCode(blit(copyFamily, {.variant = {BlitRule::TransparentAlpha, BlitDepth::ZMap},
                                  .dst = dst,
                                  .to = {dx, dy, w, h},
                                  .src = src,
                                  .from = {sx, sy, w, h},
                                  .alpha = alpha,
                                  .zBuffer = zbuffer,
                                  .z = zoffset,
                                  .zMap = zmap}));
}

std::uint32_t KX_CALL KX_bltCopyAlphamapZMap(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx, std::int32_t dy,
                                             Bitmap* src, std::int32_t sx, std::int32_t sy, std::int32_t w,
                                             std::int32_t h, Bitmap* alphamap, Bitmap* zmap, std::int32_t zoffset) {
  return toCode(blit(copyFamily, {.variant = {BlitRule::Alphamap, BlitDepth::ZMap},
                                  .dst = dst,
                                  .to = {dx, dy, w, h},
                                  .src = src,
                                  .from = {sx, sy, w, h},
                                  .alphamap = alphamap,
                                  .zBuffer = zbuffer,
                                  .z = zoffset,
                                  .zMap = zmap}));
}
