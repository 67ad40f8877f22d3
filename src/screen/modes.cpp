// Video modes: listing them, setting one with its buffers, and restoring. What all screens share stands here too.
// SPDX-License-Identifier: MIT
#include <cstring>

#include "bitmap/locks.h"
#include "bitmap/own_methods.h"
#include "frame/heap.h"
#include "kxgraphic/screen.h"
#include "platform/display.h"
#include "screen/screen.h"

namespace kx {

namespace {

using platform::display;
using platform::DisplayMode;
using platform::Extent;

/// Mode numbers asked of the display.
constexpr std::uint32_t modeNumbers = 1000;

constexpr int mostBuffers = 3;

/// Format words of buffers: the format code and what a driver may want to know.
constexpr std::uint32_t windowBufferFormat = KX_FORMAT_555 | 0x80;
constexpr std::uint32_t displayBufferFlags = 0xC0;

/// Deletes a buffer, if there is one. The outcome has no consequence: restoring always succeeds.
void deleteBuffer(Bitmap*& buffer) {
  if (buffer != nullptr) static_cast<void>(deleteThroughTable(buffer));
  buffer = nullptr;
}

/// Who uses the display.
enum class Use { Nobody, Windows, WholeDisplay };

/// One for the whole library, shared by all screens.
struct SharedState {
  Use use = Use::Nobody;
  std::int32_t screenCount = 0;
  Bitmap* leftOver[mostBuffers] = {};  ///< buffers of a whole-display set-up that failed half way
  DisplayMode desktop{};               ///< the mode before the first change
  bool modeChanged = false;
  Extent lastWindow = {640, 480};

  void release() {
    use = Use::Nobody;
    for (Bitmap*& buffer : leftOver) deleteBuffer(buffer);
  }
};

constinit SharedState shared;

/// One screen less. Settled: the last one frees the display even when another screen has taken it as a whole since.
void leaveWindow() {
  if (shared.screenCount > 0) --shared.screenCount;
  if (shared.screenCount == 0) shared.release();
}

Result getVideoModeList(Screen* screen, VideoMode** list, std::int32_t* count) {
  KX_TRY(checkScreen(screen));
  KX_TRY(checkWritable(list, count));
  VideoMode found[modeNumbers];
  std::uint32_t kept = 0;
  DisplayMode mode{};
  for (std::uint32_t number = 0; number < modeNumbers && display().enumerateMode(number, mode); ++number) {
    if (mode.flags != 0 || (mode.depth != 16 && mode.depth != 24)) continue;
    // Settled: sixteen bits are always called 5-5-5, which is what presenting takes them for.
    found[kept++] = {mode.width, mode.height, mode.refresh, mode.depth == 16 ? KX_FORMAT_555 : KX_FORMAT_888};
  }
  // Never a block of no bytes: a memory manager may answer null for one.
  auto* result = allocateArray<VideoMode>(kept != 0 ? kept : 1);
  if (result == nullptr) return Result::OutOfMemory;
  std::memcpy(result, found, kept * sizeof(VideoMode));
  *list = result;
  *count = static_cast<std::int32_t>(kept);
  return Result::Ok;
}

/// The first mode of the wanted size and depth with the refresh rate asked for; a request of 0 takes any from
/// `lowestRefresh` up.
bool findMode(const VideoMode& request, std::uint32_t depth, std::uint32_t lowestRefresh, DisplayMode& mode) {
  for (std::uint32_t number = 0; number < modeNumbers && display().enumerateMode(number, mode); ++number) {
    const bool fits =
        mode.flags == 0 && mode.depth == depth && mode.width == request.width && mode.height == request.height;
    const bool rateFits = request.refresh != 0 ? mode.refresh == request.refresh : mode.refresh >= lowestRefresh;
    if (fits && rateFits) return true;
  }
  return false;
}

Result changeDisplayMode(const VideoMode& request, void* window) {
  std::uint32_t depth = 0;
  switch (request.format) {
    case KX_FORMAT_555:
    case KX_FORMAT_565:
      depth = 16;
      break;
    case KX_FORMAT_888:
      depth = 24;
      break;
    default:
      return Result::VideoModeNotSupported;
  }
  // A mode of ours that a failed set-up left in force is not the desktop's.
  if (!shared.modeChanged && !display().currentMode(shared.desktop)) return Result::SetModeFailed;
  DisplayMode mode{};
  if (!findMode(request, depth, shared.desktop.refresh, mode) && !findMode(request, depth, 0, mode))
    return Result::VideoModeNotSupported;
  if (!display().changeMode(mode, window)) return Result::SetModeFailed;
  shared.modeChanged = true;
  return Result::Ok;
}

Result createBuffers(Bitmap* (&buffers)[mostBuffers], std::int32_t count, Extent size, std::uint32_t format) {
  BitmapMethods* methods = ownBitmapMethods();
  for (std::int32_t i = 0; i < count; ++i)
    KX_TRY(fromCode(methods->createBitmap(&buffers[i], size.width, size.height, format, 0, 0, methods)));
  return Result::Ok;
}

void giveBuffers(Screen& screen, Bitmap* const (&buffers)[mostBuffers], std::int32_t count) {
  screen.front = buffers[0];
  screen.back = buffers[count > 1 ? 1 : 0];
  *screen.thirdBuffer = buffers[2];
}

void deleteBuffers(Screen& screen) {
  deleteBuffer(*screen.thirdBuffer);
  if (screen.back == screen.front) screen.back = nullptr;
  deleteBuffer(screen.back);
  deleteBuffer(screen.front);
}

Result setUpWindow(Screen& screen, void* window, std::int32_t bufferCount) {
  if (shared.use == Use::Nobody) {
    shared.use = Use::Windows;
    shared.screenCount = 1;
  } else {
    ++shared.screenCount;
  }
  Extent size = display().clientSize(window);
  if (size.width <= 0) size.width = shared.lastWindow.width;
  if (size.height <= 0) size.height = shared.lastWindow.height;

  Bitmap* buffers[mostBuffers] = {};
  const Result created = createBuffers(buffers, bufferCount, size, windowBufferFormat);
  if (created != Result::Ok) {
    deleteBuffer(buffers[1]);
    deleteBuffer(buffers[0]);
    leaveWindow();
    return created;
  }
  giveBuffers(screen, buffers, bufferCount);
  shared.lastWindow = size;
  return Result::Ok;
}

Result setUpWholeDisplay(Screen& screen, std::int32_t bufferCount) {
  const platform::DisplayFormat format = display().format();
  std::uint32_t code = 0;
  switch (format.depth) {
    case 15:
    case 16:
      code = KX_FORMAT_555;
      break;
    case 24:
      code = KX_FORMAT_888;
      break;
    default:
      return Result::ColorFormatNotSupported;
  }
  if (shared.use != Use::Nobody) return Result::FullScreenModeAlreadyStarted;

  Bitmap* buffers[mostBuffers] = {};
  const Result created = createBuffers(buffers, bufferCount, format.size, code | displayBufferFlags);
  if (created != Result::Ok) {
    // Settled: what was made stays, and with it the display counts as taken until a windowed screen has come and gone.
    if (buffers[0] != nullptr) shared.use = Use::WholeDisplay;
    std::memcpy(shared.leftOver, buffers, sizeof buffers);
    return created;
  }
  giveBuffers(screen, buffers, bufferCount);
  shared.use = Use::WholeDisplay;
  shared.screenCount = 1;
  return Result::Ok;
}

Result setMode(Screen* screen, void* window, std::uint32_t flags, const VideoMode* mode) {
  KX_TRY(checkScreen(screen));
  if (mode != nullptr ? isBadReadPointer(mode) : changesDisplayMode(flags)) return Result::IllegalParameter;
  if (!display().isWindow(window)) return Result::IllegalParameter;

  if (kindOf(screen->modeFlags) != 0) KX_TRY(restoreThroughTable(screen));
  const auto storedFlags = static_cast<std::uint8_t>(flags);
  if (storedFlags == screen->modeFlags || kindOf(flags) == 0) return Result::Ok;

  if (changesDisplayMode(flags)) KX_TRY(changeDisplayMode(*mode, window));
  const std::int32_t bufferCount = bufferCountOf(flags);
  KX_TRY(coversDisplay(flags) ? setUpWholeDisplay(*screen, bufferCount) : setUpWindow(*screen, window, bufferCount));

  screen->restored = 0;
  screen->window = window;
  screen->bufferCount = bufferCount;
  screen->frameIndex = 0;
  screen->mode = mode != nullptr ? *mode : VideoMode{};
  screen->modeFlags = storedFlags;
  return Result::Ok;
}

Result restoreMode(Screen* screen) {
  KX_TRY(checkScreen(screen));
  const std::uint32_t flags = screen->modeFlags;
  if (kindOf(flags) == 0) return Result::Ok;

  // The buffers are the screen's own in every case, so nothing it does can take those of another screen away.
  deleteBuffers(*screen);
  if (coversDisplay(flags)) {
    shared.screenCount = 0;
    shared.release();
  } else {
    leaveWindow();
  }
  if (changesDisplayMode(flags)) {
    display().changeMode(shared.desktop, nullptr);
    shared.modeChanged = false;
  }
  screen->restored = 1;
  screen->frameIndex = 0;
  screen->bufferCount = 0;
  screen->mode = {};
  screen->modeFlags = 0;
  return Result::Ok;
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL KX_getVideoModeList(Screen* screen, VideoMode** list, std::int32_t* count) {
  return kx::toCode(kx::getVideoModeList(screen, list, count));
}

std::uint32_t KX_CALL KX_setMode(Screen* screen, void* window, std::uint32_t flags, VideoMode* mode) {
  return kx::toCode(kx::setMode(screen, window, flags, mode));
}

std::uint32_t KX_CALL KX_restoreMode(Screen* screen) { return kx::toCode(kx::restoreMode(screen)); }
