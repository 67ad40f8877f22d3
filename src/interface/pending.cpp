// Exports whose families are still to be written answer 6. A family that lands takes its lists out of this file.
// SPDX-License-Identifier: MIT
#include "frame/result.h"
#include "kxgraphic/kxgraphic.h"

#pragma GCC diagnostic ignored "-Wunused-parameter"

#define KX_PENDING(name, result, parameters) \
  result KX_CALL name parameters { return static_cast<result>(kx::Result::FunctionNotSupported); }
#define KX_METHOD(slot, result, parameters) KX_PENDING(KX_##slot, result, parameters)
#define KX_FUNCTION KX_PENDING
#define KX_PLACEHOLDER(slot, result, parameters)
#define KX_UNDESIGNED(slot, result, parameters)

extern "C" {
KX_PENDING(KX_setPixelAlpha, std::uint32_t,
           (Bitmap * bitmap, std::int32_t x, std::int32_t y, std::uint32_t colour, std::int32_t alpha))
KX_PENDING(KX_setPixelZBuffer, std::uint32_t,
           (Bitmap * bitmap, Bitmap* zbuffer, std::int32_t x, std::int32_t y, std::uint32_t colour, std::int32_t z))
KX_PENDING(KX_setPixelAlphaZBuffer, std::uint32_t,
           (Bitmap * bitmap, Bitmap* zbuffer, std::int32_t x, std::int32_t y, std::uint32_t colour, std::int32_t alpha,
            std::int32_t z))
KX_PENDING(KX_moveRect, std::uint32_t,
           (Bitmap * bitmap, std::int32_t dx, std::int32_t dy, std::int32_t sx, std::int32_t sy, std::int32_t w,
            std::int32_t h))
#include "kxgraphic/exports/fills.inc"
#include "kxgraphic/exports/image_functions.inc"
#include "kxgraphic/exports/image_methods.inc"
#include "kxgraphic/exports/lines.inc"
}
