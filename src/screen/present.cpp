// Presenting: the buffers change places and the new front goes to the display.
// SPDX-License-Identifier: MIT
#include <utility>

#include "bitmap/locks.h"
#include "kxgraphic/screen.h"
#include "pixel/formats.h"
#include "platform/display.h"
#include "screen/screen.h"

namespace kx {

namespace {

void rotateBuffers(Screen& screen) {
  std::swap(screen.front, screen.back);
  if (*screen.thirdBuffer != nullptr) std::swap(screen.back, *screen.thirdBuffer);
}

Result flip(Screen* screen) {
  KX_TRY(checkScreen(screen));
  if (kindOf(screen->modeFlags) == 0) return Result::ModeNotSet;
  if (++screen->frameIndex >= screen->bufferCount) screen->frameIndex = 0;
  rotateBuffers(*screen);

  Bitmap* front = screen->front;
  KX_TRY(lockOnly(front));
  platform::display().present(screen->window, {.pixels = front->pixels,
                                               .size = {front->width, front->height},
                                               .pitch = front->pitch,
                                               .format = formatCode(front->format)});
  return unlock(front);
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL KX_flip(Screen* screen, std::uint32_t) { return kx::toCode(kx::flip(screen)); }
