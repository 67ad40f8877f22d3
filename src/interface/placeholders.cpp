// Exports that hold their name and slot and answer 6: placeholders of the triangle family and undesigned functions.
// SPDX-License-Identifier: MIT
#include "frame/result.h"
#include "interface/undesigned.h"
#include "kxgraphic/kxgraphic.h"

// The parameters are named for readers of the list only.
#pragma GCC diagnostic ignored "-Wunused-parameter"

#define KX_METHOD(slot, result, parameters)
#define KX_PLACEHOLDER(slot, result, parameters) \
  result KX_CALL KX_##slot parameters { return kx::toCode(kx::Result::FunctionNotSupported); }
#define KX_UNDESIGNED KX_PLACEHOLDER

extern "C" {
#include "kxgraphic/exports/triangles.inc"
#include "kxgraphic/exports/undesigned_methods.inc"
}
