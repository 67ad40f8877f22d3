// A driver with two functions of the bitmap table under the prefix "game".
// SPDX-License-Identifier: MIT
#include <cstdint>

#include "kxgraphic/types.h"

extern "C" {
std::uint32_t KX_CALL _game_lock(Bitmap*);
std::uint32_t KX_CALL _game_unlock(Bitmap*);
}

std::uint32_t KX_CALL _game_lock(Bitmap*) { return 0x111; }
std::uint32_t KX_CALL _game_unlock(Bitmap*) { return 0x222; }
