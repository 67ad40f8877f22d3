// The fifteen stretch blits: each names its variant and its arguments.
// SPDX-License-Identifier: MIT
#include "blit/families.h"
#include "kxgraphic/blit.h"

using kx::blit;
using kx::BlitDepth;
using kx::BlitRule;
using kx::stretchFamily;
using kx::toCode;

std::uint32_t KX_CALL KX_bltStretch(Bitmap* dst, std::int32_t dx, std::int32_t dy, std::int32_t dw, std::int32_t dh,
                                    Bitmap* src, std::int32_t sx, std::int32_t sy, std::int32_t sw, std::int32_t sh) {
  return toCode(blit(stretchFamily, {.variant = {BlitRule::Copy, BlitDepth::None},
                                     .dst = dst,
                                     .to = {dx, dy, dw, dh},
                                     .src = src,
                                     .from = {sx, sy, sw, sh}}));
}

std::uint32_t KX_CALL KX_bltStretchTransparent(Bitmap* dst, std::int32_t dx, std::int32_t dy, std::int32_t dw,
                                               std::int32_t dh, Bitmap* src, std::int32_t sx, std::int32_t sy,
                                               std::int32_t sw, std::int32_t sh) {
  return toCode(blit(stretchFamily, {.variant = {BlitRule::Transparent, BlitDepth::None},
                                     .dst = dst,
                                     .to = {dx, dy, dw, dh},
                                     .src = src,
                                     .from = {sx, sy, sw, sh}}));
}

std::uint32_t KX_CALL KX_bltStretchAlpha(Bitmap* dst, std::int32_t dx, std::int32_t dy, std::int32_t dw,
                                         std::int32_t dh, Bitmap* src, std::int32_t sx, std::int32_t sy,
                                         std::int32_t sw, std::int32_t sh, std::int32_t alpha) {
  return toCode(blit(stretchFamily, {.variant = {BlitRule::Alpha, BlitDepth::None},
                                     .dst = dst,
                                     .to = {dx, dy, dw, dh},
                                     .src = src,
                                     .from = {sx, sy, sw, sh},
                                     .alpha = alpha}));
}

std::uint32_t KX_CALL KX_bltStretchTransparentAlpha(Bitmap* dst, std::int32_t dx, std::int32_t dy, std::int32_t dw,
                                                    std::int32_t dh, Bitmap* src, std::int32_t sx, std::int32_t sy,
                                                    std::int32_t sw, std::int32_t sh, std::int32_t alpha) {
  return toCode(blit(stretchFamily, {.variant = {BlitRule::TransparentAlpha, BlitDepth::None},
                                     .dst = dst,
                                     .to = {dx, dy, dw, dh},
                                     .src = src,
                                     .from = {sx, sy, sw, sh},
                                     .alpha = alpha}));
}

std::uint32_t KX_CALL KX_bltStretchAlphamap(Bitmap* dst, std::int32_t dx, std::int32_t dy, std::int32_t dw,
                                            std::int32_t dh, Bitmap* src, std::int32_t sx, std::int32_t sy,
                                            std::int32_t sw, std::int32_t sh, Bitmap* alphamap) {
  return toCode(blit(stretchFamily, {.variant = {BlitRule::Alphamap, BlitDepth::None},
                                     .dst = dst,
                                     .to = {dx, dy, dw, dh},
                                     .src = src,
                                     .from = {sx, sy, sw, sh},
                                     .alphamap = alphamap}));
}

std::uint32_t KX_CALL KX_bltStretchZBuffer(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx, std::int32_t dy,
                                           std::int32_t dw, std::int32_t dh, Bitmap* src, std::int32_t sx,
                                           std::int32_t sy, std::int32_t sw, std::int32_t sh, std::int32_t z) {
  return toCode(blit(stretchFamily, {.variant = {BlitRule::Copy, BlitDepth::ZBuffer},
                                     .dst = dst,
                                     .to = {dx, dy, dw, dh},
                                     .src = src,
                                     .from = {sx, sy, sw, sh},
                                     .zBuffer = zbuffer,
                                     .z = z}));
}

std::uint32_t KX_CALL KX_bltStretchTransparentZBuffer(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx, std::int32_t dy,
                                                      std::int32_t dw, std::int32_t dh, Bitmap* src, std::int32_t sx,
                                                      std::int32_t sy, std::int32_t sw, std::int32_t sh,
                                                      std::int32_t z) {
  return toCode(blit(stretchFamily, {.variant = {BlitRule::Transparent, BlitDepth::ZBuffer},
                                     .dst = dst,
                                     .to = {dx, dy, dw, dh},
                                     .src = src,
                                     .from = {sx, sy, sw, sh},
                                     .zBuffer = zbuffer,
                                     .z = z}));
}

std::uint32_t KX_CALL KX_bltStretchAlphaZBuffer(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx, std::int32_t dy,
                                                std::int32_t dw, std::int32_t dh, Bitmap* src, std::int32_t sx,
                                                std::int32_t sy, std::int32_t sw, std::int32_t sh, std::int32_t alpha,
                                                std::int32_t z) {
  return toCode(blit(stretchFamily, {.variant = {BlitRule::Alpha, BlitDepth::ZBuffer},
                                     .dst = dst,
                                     .to = {dx, dy, dw, dh},
                                     .src = src,
                                     .from = {sx, sy, sw, sh},
                                     .alpha = alpha,
                                     .zBuffer = zbuffer,
                                     .z = z}));
}

std::uint32_t KX_CALL KX_bltStretchTransparentAlphaZBuffer(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx,
                                                           std::int32_t dy, std::int32_t dw, std::int32_t dh,
                                                           Bitmap* src, std::int32_t sx, std::int32_t sy,
                                                           std::int32_t sw, std::int32_t sh, std::int32_t alpha,
                                                           std::int32_t z) {
  return toCode(blit(stretchFamily, {.variant = {BlitRule::TransparentAlpha, BlitDepth::ZBuffer},
                                     .dst = dst,
                                     .to = {dx, dy, dw, dh},
                                     .src = src,
                                     .from = {sx, sy, sw, sh},
                                     .alpha = alpha,
                                     .zBuffer = zbuffer,
                                     .z = z}));
}

std::uint32_t KX_CALL KX_bltStretchAlphamapZBuffer(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx, std::int32_t dy,
                                                   std::int32_t dw, std::int32_t dh, Bitmap* src, std::int32_t sx,
                                                   std::int32_t sy, std::int32_t sw, std::int32_t sh, Bitmap* alphamap,
                                                   std::int32_t z) {
  return toCode(blit(stretchFamily, {.variant = {BlitRule::Alphamap, BlitDepth::ZBuffer},
                                     .dst = dst,
                                     .to = {dx, dy, dw, dh},
                                     .src = src,
                                     .from = {sx, sy, sw, sh},
                                     .alphamap = alphamap,
                                     .zBuffer = zbuffer,
                                     .z = z}));
}

std::uint32_t KX_CALL KX_bltStretchZMap(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx, std::int32_t dy, std::int32_t dw,
                                        std::int32_t dh, Bitmap* src, std::int32_t sx, std::int32_t sy, std::int32_t sw,
                                        std::int32_t sh, Bitmap* zmap, std::int32_t zoffset) {
  return toCode(blit(stretchFamily, {.variant = {BlitRule::Copy, BlitDepth::ZMap},
                                     .dst = dst,
                                     .to = {dx, dy, dw, dh},
                                     .src = src,
                                     .from = {sx, sy, sw, sh},
                                     .zBuffer = zbuffer,
                                     .z = zoffset,
                                     .zMap = zmap}));
}

std::uint32_t KX_CALL KX_bltStretchTransparentZMap(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx, std::int32_t dy,
                                                   std::int32_t dw, std::int32_t dh, Bitmap* src, std::int32_t sx,
                                                   std::int32_t sy, std::int32_t sw, std::int32_t sh, Bitmap* zmap,
                                                   std::int32_t zoffset) {
  return toCode(blit(stretchFamily, {.variant = {BlitRule::Transparent, BlitDepth::ZMap},
                                     .dst = dst,
                                     .to = {dx, dy, dw, dh},
                                     .src = src,
                                     .from = {sx, sy, sw, sh},
                                     .zBuffer = zbuffer,
                                     .z = zoffset,
                                     .zMap = zmap}));
}

std::uint32_t KX_CALL KX_bltStretchAlphaZMap(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx, std::int32_t dy,
                                             std::int32_t dw, std::int32_t dh, Bitmap* src, std::int32_t sx,
                                             std::int32_t sy, std::int32_t sw, std::int32_t sh, std::int32_t alpha,
                                             Bitmap* zmap, std::int32_t zoffset) {
  return toCode(blit(stretchFamily, {.variant = {BlitRule::Alpha, BlitDepth::ZMap},
                                     .dst = dst,
                                     .to = {dx, dy, dw, dh},
                                     .src = src,
                                     .from = {sx, sy, sw, sh},
                                     .alpha = alpha,
                                     .zBuffer = zbuffer,
                                     .z = zoffset,
                                     .zMap = zmap}));
}

std::uint32_t KX_CALL KX_bltStretchTransparentAlphaZMap(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx, std::int32_t dy,
                                                        std::int32_t dw, std::int32_t dh, Bitmap* src, std::int32_t sx,
                                                        std::int32_t sy, std::int32_t sw, std::int32_t sh,
                                                        std::int32_t alpha, Bitmap* zmap, std::int32_t zoffset) {
  return toCode(blit(stretchFamily, {.variant = {BlitRule::TransparentAlpha, BlitDepth::ZMap},
                                     .dst = dst,
                                     .to = {dx, dy, dw, dh},
                                     .src = src,
                                     .from = {sx, sy, sw, sh},
                                     .alpha = alpha,
                                     .zBuffer = zbuffer,
                                     .z = zoffset,
                                     .zMap = zmap}));
}

std::uint32_t KX_CALL KX_bltStretchAlphamapZMap(Bitmap* dst, Bitmap* zbuffer, std::int32_t dx, std::int32_t dy,
                                                std::int32_t dw, std::int32_t dh, Bitmap* src, std::int32_t sx,
                                                std::int32_t sy, std::int32_t sw, std::int32_t sh, Bitmap* alphamap,
                                                Bitmap* zmap, std::int32_t zoffset) {
  return toCode(blit(stretchFamily, {.variant = {BlitRule::Alphamap, BlitDepth::ZMap},
                                     .dst = dst,
                                     .to = {dx, dy, dw, dh},
                                     .src = src,
                                     .from = {sx, sy, sw, sh},
                                     .alphamap = alphamap,
                                     .zBuffer = zbuffer,
                                     .z = zoffset,
                                     .zMap = zmap}));
}
