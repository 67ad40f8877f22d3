// The exported tables of the constant-alpha blend, filled when the library is loaded.
// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>

#include "kxgraphic/blit.h"

#define KX_TABLE(name, type, dimensions) type name dimensions;
#include "kxgraphic/exports/data.inc"
#undef KX_TABLE

namespace {

template <std::size_t Channels>
void fillProducts(std::uint16_t (&direct)[256][Channels], std::uint16_t (&inverse)[256][Channels]) {
  for (std::size_t alpha = 0; alpha < 256; ++alpha)
    for (std::size_t channel = 0; channel < Channels; ++channel) {
      direct[alpha][channel] = static_cast<std::uint16_t>(alpha * channel);
      inverse[alpha][channel] = static_cast<std::uint16_t>((255 - alpha) * channel);
    }
}

/// Runs before any export can be called.
const struct AlphaTables {
  AlphaTables() {
    fillProducts(Alpha8BPP_Color8BPP, Alpha8BPP_Color8BPP_Inverse);
    fillProducts(Alpha8BPP_Color15BPP, Alpha8BPP_Color15BPP_Inverse);
    fillProducts(Alpha8BPP_Color16BPP, Alpha8BPP_Color16BPP_Inverse);
    // The last 256 entries lie beyond every sum of a blend; their quotients keep their low byte.
    for (unsigned i = 0; i < 65536; ++i) Alpha8BPP_DivTable[i] = static_cast<std::uint8_t>(i / 255);
  }
} fillAtLoad;

}  // namespace
