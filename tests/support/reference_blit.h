// The blits once more, one pixel at a time and straight from the rules, for comparison with the library.
// SPDX-License-Identifier: MIT
#pragma once

#include "support/blit_call.h"
#include "support/test_image.h"

namespace kxtest {

/// The target of a reference blit: memory with its guards, described like the destination and the Z buffer of the call.
struct ReferenceTarget {
  std::uint8_t* pixels;  ///< start of the destination's block
  std::size_t bytes;     ///< that may be drawn on
  std::uint8_t* depths;  ///< the same for the Z buffer, or null
  std::size_t depthBytes;
};

/// Draws a call that passes all tests onto plain targets. Bitmaps of the call are only read.
void referenceBlit(const BlitCall& call, const Bitmap& target, const ReferenceTarget& memory, std::size_t alphamapBytes,
                   std::size_t zmapBytes);

}  // namespace kxtest
