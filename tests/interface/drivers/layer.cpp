// A driver that rests on the library: one function of its own under the library's prefix, which passes the call on.
// SPDX-License-Identifier: MIT
#include <cstdint>

#include "kxgraphic/kxgraphic.h"

extern "C" std::uint32_t KX_CALL _KX_lock(Bitmap*);

std::uint32_t KX_CALL _KX_lock(Bitmap* bitmap) { return KX_lock(bitmap) + 0x1000; }
