// The library on real windows of SDL, whatever driver SDL starts with: its dummy, or an X server, whose screen is then
// read back and compared.
// SPDX-License-Identifier: MIT
#include <SDL.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "display/x11_server.h"
#include "kxgraphic/kxgraphic.h"

extern "C" void mmgr_free(void* block);

namespace {

constexpr int windowX = 40, windowY = 30, windowWidth = 150, windowHeight = 90;

/// A colour of the test picture; the three least bits of each channel are zero.
struct Colour {
  unsigned red, green, blue;
};

Colour pictureColour(int x, int y, int frame) {
  return {static_cast<unsigned>(x * 8 & 0xF8), static_cast<unsigned>(y * 8 & 0xF8),
          static_cast<unsigned>((x + y + frame * 5) * 8 & 0xF8)};
}

void drawPicture(Bitmap* bitmap, int frame) {
  for (int y = 0; y < bitmap->height; ++y)
    for (int x = 0; x < bitmap->width; ++x) {
      const Colour colour = pictureColour(x, y, frame);
      std::uint8_t* row = bitmap->pixels + y * bitmap->pitch;
      if ((bitmap->format & KX_FORMAT_CODE_MASK) == KX_FORMAT_888) {
        row[x * 3] = static_cast<std::uint8_t>(colour.blue);
        row[x * 3 + 1] = static_cast<std::uint8_t>(colour.green);
        row[x * 3 + 2] = static_cast<std::uint8_t>(colour.red);
      } else {
        const auto pixel =
            static_cast<std::uint16_t>(colour.red >> 3 << 10 | colour.green >> 3 << 5 | colour.blue >> 3);
        std::memcpy(row + x * 2, &pixel, sizeof pixel);
      }
    }
}

void handleEvents() {
  for (int i = 0; i < 10; ++i) {
    SDL_Event event;
    while (SDL_PollEvent(&event) != 0) {
    }
    SDL_Delay(5);
  }
}

/// What a window shows: read from the X server, or from the window's surface where there is none.
class Shown {
public:
  explicit Shown(SDL_Window* window) : surface_(SDL_GetWindowSurface(window)) {
    if (std::string(SDL_GetCurrentVideoDriver()) != "x11") return;
    screenshot_ = takeX11Screenshot();
    SDL_GetWindowPosition(window, &x_, &y_);
  }

  /// The five upper bits of each channel in the window's client area.
  [[nodiscard]] Colour at(int x, int y) const {
    const SDL_PixelFormat* format = surface_->format;
    std::uint32_t pixel = 0;
    if (screenshot_.empty()) {
      const auto* row = static_cast<const std::uint8_t*>(surface_->pixels) + y * surface_->pitch;
      std::memcpy(&pixel, row + x * format->BytesPerPixel, format->BytesPerPixel);
    } else {
      pixel = screenshot_.at(x_ + x, y_ + y);
    }
    Uint8 red = 0, green = 0, blue = 0;
    SDL_GetRGB(pixel, format, &red, &green, &blue);
    return {red & 0xF8U, green & 0xF8U, blue & 0xF8U};
  }

private:
  SDL_Surface* surface_;
  Screenshot screenshot_;
  int x_ = 0, y_ = 0;
};

/// Compares the first width x height pixels of a window's client area with a colour for each.
template <typename ColourAt>
void expectShown(SDL_Window* window, int width, int height, ColourAt expectedAt) {
  const Shown shown(window);
  int wrong = 0;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const Colour expected = expectedAt(x, y);
      const Colour colour = shown.at(x, y);
      wrong += colour.red != expected.red || colour.green != expected.green || colour.blue != expected.blue;
    }
  EXPECT_EQ(0, wrong) << "pixels of " << width * height;
}

void expectPicture(SDL_Window* window, int width, int height, int frame) {
  expectShown(window, width, height, [=](int x, int y) { return pictureColour(x, y, frame); });
}

/// Sizes of frames that are offered beside the desktop's own, where the X server is a virtual one.
struct Size {
  int width, height;
};
constexpr Size offeredSizes[] = {{640, 480}, {150, 110}, {240, 200}, {310, 50}, {40, 230}};

class SdlDisplayTest : public testing::Test {
protected:
  static void SetUpTestSuite() {
    const char* driver = std::getenv("SDL_VIDEODRIVER");
    if (driver == nullptr || std::string(driver) != "x11") return;
    for (const Size& size : offeredSizes) offerX11Mode(size.width, size.height);
  }

  void SetUp() override {
    methods.version = 0x10000;
    ASSERT_EQ(0u, KX_createScreen(&screen, nullptr, 0, &methods));
    if (std::getenv("DISPLAY") == nullptr && std::getenv("WAYLAND_DISPLAY") == nullptr)
      setenv("SDL_VIDEODRIVER", "dummy", 0);
    if (!startVideo()) GTEST_SKIP() << "no display: " << SDL_GetError();
    ASSERT_NE(nullptr, window) << SDL_GetError();
  }

  bool startVideo() {
    if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0) return false;
    window = SDL_CreateWindow("kxgraphic", windowX, windowY, windowWidth, windowHeight, SDL_WINDOW_BORDERLESS);
    handleEvents();
    return true;
  }

  void TearDown() override {
    EXPECT_EQ(0u, KX_deleteScreen(screen));
    if (window != nullptr) SDL_DestroyWindow(window);
    SDL_Quit();
  }

  /// Three frames through the screen's buffers; each must be what the window shows afterwards.
  void expectFlipsShow(int width, int height) {
    for (int frame = 0; frame < 3; ++frame) {
      drawPicture(screen->back, frame);
      ASSERT_EQ(0u, KX_flip(screen, 0));
      expectPicture(window, width, height, frame);
    }
  }

  ScreenMethods methods{};
  Screen* screen = nullptr;
  SDL_Window* window = nullptr;
};

TEST_F(SdlDisplayTest, ListsEverySizeAtBothDepthsEvenBeforeTheProgramStartsVideo) {
  SDL_DisplayMode desktop;
  ASSERT_EQ(0, SDL_GetDesktopDisplayMode(0, &desktop));
  SDL_DestroyWindow(window);
  window = nullptr;
  for (const bool videoRuns : {true, false}) {
    if (!videoRuns) SDL_Quit();
    VideoMode* list = nullptr;
    std::int32_t count = 0;
    ASSERT_EQ(0u, KX_getVideoModeList(screen, &list, &count));
    EXPECT_EQ(videoRuns, SDL_GetCurrentVideoDriver() != nullptr);
    bool hasDesktop[2] = {};
    for (int i = 0; i < count; ++i) {
      const VideoMode& mode = list[i];
      EXPECT_EQ(i % 2 == 0 ? KX_FORMAT_555 : KX_FORMAT_888, mode.format);
      if (mode.width == desktop.w && mode.height == desktop.h) hasDesktop[i % 2] = true;
    }
    EXPECT_TRUE(hasDesktop[0] && hasDesktop[1]);
    mmgr_free(list);
  }
}

TEST_F(SdlDisplayTest, OnlyWindowsAreWindows) {
  // Nothing of the kind, memory that holds no window, an address that nothing is mapped to, a window that is gone.
  std::vector<char> memory(1000);
  SDL_Window* gone = SDL_CreateWindow("", 0, 0, 10, 10, SDL_WINDOW_HIDDEN);
  SDL_DestroyWindow(gone);
  void* const handles[] = {nullptr, reinterpret_cast<void*>(std::uintptr_t{5}), memory.data(),
                           reinterpret_cast<void*>(std::uintptr_t{0x123450}), gone};
  for (void* handle : handles) EXPECT_EQ(7u, KX_setMode(screen, handle, KX_MODE_WINDOWED, nullptr));
  EXPECT_EQ(0u, KX_setMode(screen, window, KX_MODE_WINDOWED, nullptr));

  // A window that goes while it has a mode.
  SDL_DestroyWindow(window);
  window = nullptr;
  EXPECT_EQ(0u, KX_flip(screen, 0));
}

TEST_F(SdlDisplayTest, WindowedFramesShowAtTheTopLeft) {
  for (const std::uint32_t buffers : {0u, 0x08u, 0x10u}) {
    ASSERT_EQ(0u, KX_setMode(screen, window, KX_MODE_WINDOWED | buffers, nullptr));
    EXPECT_EQ(windowWidth, screen->front->width);
    EXPECT_EQ(windowHeight, screen->front->height);
    EXPECT_EQ(0x85u, screen->front->format);
    expectFlipsShow(windowWidth, windowHeight);
  }
  // The frame keeps its size in a window that grows, and is cut in one that shrinks.
  SDL_SetWindowSize(window, windowWidth + 30, windowHeight + 20);
  handleEvents();
  expectFlipsShow(windowWidth, windowHeight);
  SDL_SetWindowSize(window, windowWidth - 30, windowHeight - 20);
  handleEvents();
  expectFlipsShow(windowWidth - 30, windowHeight - 20);
}

TEST_F(SdlDisplayTest, FullScreenTakesTheWindowAndGivesItBack) {
  SDL_DisplayMode desktop;
  ASSERT_EQ(0, SDL_GetDesktopDisplayMode(0, &desktop));
  const Uint32 flags = SDL_GetWindowFlags(window);
  for (const int format : {5, 6, 7}) {
    VideoMode mode = {desktop.w, desktop.h, 0, format};
    ASSERT_EQ(0u, KX_setMode(screen, window, KX_MODE_FULL_SCREEN | KX_MODE_TWO_BUFFERS, &mode));
    EXPECT_EQ(format == 7 ? 0xC7u : 0xC5u, screen->front->format);
    EXPECT_EQ(desktop.w, screen->front->width);
    EXPECT_EQ(desktop.h, screen->front->height);
    handleEvents();
    EXPECT_NE(0u, SDL_GetWindowFlags(window) & SDL_WINDOW_FULLSCREEN);
    expectFlipsShow(desktop.w, desktop.h);
    ASSERT_EQ(0u, KX_restoreMode(screen));
    handleEvents();

    int x = 0, y = 0, width = 0, height = 0;
    SDL_GetWindowPosition(window, &x, &y);
    SDL_GetWindowSize(window, &width, &height);
    EXPECT_EQ(windowX, x);
    EXPECT_EQ(windowY, y);
    EXPECT_EQ(windowWidth, width);
    EXPECT_EQ(windowHeight, height);
    constexpr Uint32 lasting = SDL_WINDOW_FULLSCREEN_DESKTOP | SDL_WINDOW_BORDERLESS | SDL_WINDOW_OPENGL |
                               SDL_WINDOW_RESIZABLE | SDL_WINDOW_SHOWN | SDL_WINDOW_HIDDEN;
    EXPECT_EQ(flags & lasting, SDL_GetWindowFlags(window) & lasting);
    ASSERT_EQ(0u, KX_setMode(screen, window, KX_MODE_WINDOWED, nullptr));
    expectFlipsShow(windowWidth, windowHeight);
  }
  VideoMode unknown = {desktop.w + 1, desktop.h, 0, 5};
  EXPECT_EQ(0x4004u, KX_setMode(screen, window, KX_MODE_FULL_SCREEN, &unknown));

  // A window that goes while it is full screen.
  VideoMode mode = {desktop.w, desktop.h, 0, 7};
  ASSERT_EQ(0u, KX_setMode(screen, window, KX_MODE_FULL_SCREEN, &mode));
  SDL_DestroyWindow(window);
  window = nullptr;
  EXPECT_EQ(0u, KX_flip(screen, 0));
  EXPECT_EQ(0u, KX_restoreMode(screen));
}

/// Where a frame goes on a desktop.
struct Place {
  int x, y;
  Size size;
};

Place placeOf(const Size& frame, const Size& desktop) {
  const int factor = std::min(desktop.width / frame.width, desktop.height / frame.height);
  Size size = {frame.width * factor, frame.height * factor};
  if (factor == 0) {
    const double scale = std::min(double(desktop.width) / frame.width, double(desktop.height) / frame.height);
    size = {static_cast<int>(frame.width * scale + 1e-6), static_cast<int>(frame.height * scale + 1e-6)};
  }
  return {(desktop.width - size.width) / 2, (desktop.height - size.height) / 2, size};
}

TEST_F(SdlDisplayTest, FullScreenEnlargesByAWholeFactorAndReducesInProportion) {
  SDL_DisplayMode own;
  ASSERT_EQ(0, SDL_GetDesktopDisplayMode(0, &own));
  int shown = 0;
  // Half the desktop is smaller than some of the frames.
  for (const Size& desktop : {Size{own.w, own.h}, Size{own.w / 2, own.h / 2}}) {
    SDL_DestroyWindow(window);
    SDL_QuitSubSystem(SDL_INIT_VIDEO);
    const bool isSet = setX11Desktop(desktop.width, desktop.height);
    ASSERT_TRUE(startVideo());
    if (!isSet) GTEST_SKIP() << "the display has one mode only";
    for (const Size& size : offeredSizes) {
      SCOPED_TRACE(testing::Message() << size.width << "x" << size.height << " on " << desktop.width << "x"
                                      << desktop.height);
      VideoMode mode = {size.width, size.height, 0, size.width % 20 == 0 ? KX_FORMAT_888 : KX_FORMAT_565};
      const std::uint32_t code = KX_setMode(screen, window, KX_MODE_FULL_SCREEN, &mode);
      if (code == 0x4004 && (size.width > own.w || size.height > own.h)) continue;
      ASSERT_EQ(0u, code);
      handleEvents();
      drawPicture(screen->back, 1);
      ASSERT_EQ(0u, KX_flip(screen, 0));
      const Place place = placeOf(size, desktop);
      expectShown(window, desktop.width, desktop.height, [&](int x, int y) {
        x -= place.x;
        y -= place.y;
        if (x < 0 || y < 0 || x >= place.size.width || y >= place.size.height) return Colour{0, 0, 0};
        return pictureColour(x * size.width / place.size.width, y * size.height / place.size.height, 1);
      });
      ASSERT_EQ(0u, KX_restoreMode(screen));
      handleEvents();
      ++shown;
    }
  }
  setX11Desktop(own.w, own.h);
  EXPECT_LE(8, shown);
}

TEST_F(SdlDisplayTest, AWindowWithARendererOfItsOwnDoesNoHarm) {
  SDL_Renderer* renderer = SDL_CreateRenderer(window, -1, SDL_RENDERER_SOFTWARE);
  ASSERT_EQ(0u, KX_setMode(screen, window, KX_MODE_WINDOWED | KX_MODE_TWO_BUFFERS, nullptr));
  for (int frame = 0; frame < 2; ++frame) {
    EXPECT_EQ(0u, KX_flip(screen, 0));
    SDL_RenderClear(renderer);
    SDL_RenderPresent(renderer);
    handleEvents();
  }
  EXPECT_EQ(0u, KX_restoreMode(screen));
  SDL_DestroyRenderer(renderer);
}

}  // namespace
