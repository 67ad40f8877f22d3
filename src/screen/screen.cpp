// Creating and deleting screens, and the vertical blank that nobody waits for.
// SPDX-License-Identifier: MIT
#include "screen/screen.h"

#include "frame/heap.h"
#include "kxgraphic/screen.h"

namespace kx {

namespace {

Result createScreen(Screen** result, void* application, ScreenMethods* methods) {
  KX_TRY(checkWritable(result, methods));
  if (methods->version != currentVersion) return Result::UnsupportedMethodsVersion;
  HeapRecord<Screen> screen = makeRecord<Screen>();
  HeapRecord<Bitmap*> thirdBuffer = makeRecord<Bitmap*>();
  if (!screen || !thirdBuffer) return Result::OutOfMemory;
  screen->methods = methods;
  screen->version = currentVersion;
  screen->application = application;
  screen->thirdBuffer = thirdBuffer.release();
  *result = screen.release();
  return Result::Ok;
}

Result deleteScreen(Screen* screen) {
  KX_TRY(checkScreen(screen));
  KX_TRY(restoreThroughTable(screen));
  mmgr_free(screen->thirdBuffer);
  mmgr_free(screen);
  return Result::Ok;
}

}  // namespace

Result restoreThroughTable(Screen* screen) {
  const auto restore = screen->methods->restoreMode;
  return fromCode(restore != nullptr ? restore(screen) : KX_restoreMode(screen));
}

}  // namespace kx

std::uint32_t KX_CALL KX_createScreen(Screen** result, void* application, std::uint32_t, ScreenMethods* methods) {
  return kx::toCode(kx::createScreen(result, application, methods));
}

std::uint32_t KX_CALL KX_deleteScreen(Screen* screen) { return kx::toCode(kx::deleteScreen(screen)); }

std::uint8_t KX_CALL KX_isVerticalBlank(Screen*) { return 0; }

// Settled: neither wait waits, so that a caller who loops on them is not held up.
std::uint32_t KX_CALL KX_waitForVerticalBlankStart(Screen* screen) { return kx::toCode(kx::checkScreen(screen)); }

std::uint32_t KX_CALL KX_waitForVerticalBlankEnd(Screen* screen) { return kx::toCode(kx::checkScreen(screen)); }
