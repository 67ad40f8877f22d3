// The step from a format word to the type of the format, for code that is made once for each pixel layout.
// Internal linkage, as the types have it.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "pixel/blend_rules.h"
#include "pixel/formats.h"

namespace kx {

namespace {

/// Calls `use(Format{})` with the type of a format of whole bytes. A palette index counts as an intensity. Nothing
/// happens for other formats.
template <typename Use>
void withByteFormat(std::uint32_t format, Use use) {
  switch (formatCode(format)) {
    case KX_FORMAT_GREY:
    case KX_FORMAT_PALETTE:
      return use(Grey8{});
    case KX_FORMAT_555:
      return use(Rgb555{});
    case KX_FORMAT_565:
      return use(Rgb565{});
    case KX_FORMAT_888:
      return use(Bgr24{});
    default:
      return;
  }
}

}  // namespace

}  // namespace kx
