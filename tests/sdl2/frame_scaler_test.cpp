// Converting and scaling frames for a window, against single pixels; and a display without video.
// SPDX-License-Identifier: MIT
#include "platform/sdl2/frame_scaler.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <vector>

#include "frame/heap.h"
#include "kxgraphic/screen.h"
#include "pixel/memory.h"

namespace {

using namespace kx::platform;

struct Layout {
  int bytes;
  ChannelPlace red, green, blue;
};

constexpr Layout layouts[] = {
    {4, {16, 0}, {8, 0}, {0, 0}}, {4, {0, 0}, {8, 0}, {16, 0}}, {4, {24, 0}, {16, 0}, {8, 0}},
    {3, {16, 0}, {8, 0}, {0, 0}}, {2, {11, 3}, {5, 2}, {0, 3}}, {2, {10, 3}, {5, 3}, {0, 3}},
};

/// A channel of `bits` bits, `shift` up, as eight bits: its own repeated from the top.
std::uint32_t channel(std::uint32_t pixel, int shift, int bits) {
  std::uint32_t value = 0;
  for (int i = 0; i < 8; ++i) value = value << 1 | (pixel >> (shift + bits - 1 - i % bits) & 1);
  return value;
}

std::uint32_t expectedPixel(const Frame& frame, const Layout& layout, int x, int y) {
  const std::uint8_t* row = frame.pixels + y * frame.pitch;
  std::uint32_t red = 0, green = 0, blue = 0;
  if (frame.format == 7) {
    blue = row[x * 3];
    green = row[x * 3 + 1];
    red = row[x * 3 + 2];
  } else {
    const std::uint32_t pixel = kx::load16(row + x * 2);
    const int greenBits = frame.format == 5 ? 5 : 6;
    red = channel(pixel, 5 + greenBits, 5);
    green = channel(pixel, 5, greenBits);
    blue = channel(pixel, 0, 5);
  }
  return red >> layout.red.loss << layout.red.shift | green >> layout.green.loss << layout.green.shift |
         blue >> layout.blue.loss << layout.blue.shift;
}

TEST(FrameScaler, ShowsTheNearestPixelsAndTouchesNothingElse) {
  std::mt19937 random{1};
  const auto pick = [&](int low, int high) { return std::uniform_int_distribution<>(low, high)(random); };
  for (int step = 0; step < 3000; ++step) {
    const Layout& layout = layouts[static_cast<unsigned>(step) % std::size(layouts)];
    Frame frame{.pixels = nullptr,
                .size = {pick(1, 40), pick(1, 9)},
                .pitch = 0,
                .format = static_cast<std::uint32_t>(pick(5, 7))};
    frame.pitch = frame.size.width * 3 + pick(0, 5);
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(frame.pitch * frame.size.height));
    for (auto& byte : pixels) byte = static_cast<std::uint8_t>(random());
    frame.pixels = pixels.data();

    const Extent size = {pick(1, 70), pick(1, 20)};
    const std::int32_t pitch = size.width * layout.bytes + pick(0, 6);
    constexpr std::uint8_t untouched = 0xA5;
    std::vector<std::uint8_t> memory(static_cast<std::size_t>(pitch * size.height), untouched);
    const Canvas canvas = {memory.data(), size, pitch, layout.bytes, layout.red, layout.green, layout.blue};
    const Extent shown = pick(0, 2) == 0 ? frame.size : Extent{pick(1, 90), pick(1, 30)};
    const Area place = {pick(-20, 50), pick(-10, 20), shown};
    drawFrame(canvas, frame, place);

    for (int y = 0; y < size.height; ++y) {
      const std::uint8_t* row = memory.data() + y * pitch;
      for (int x = 0; x < size.width; ++x) {
        const int inX = x - place.x, inY = y - place.y;
        std::uint32_t value = 0, expected = 0;
        std::memcpy(&value, row + x * layout.bytes, static_cast<std::size_t>(layout.bytes));
        if (inX >= 0 && inY >= 0 && inX < shown.width && inY < shown.height)
          expected = expectedPixel(frame, layout, inX * frame.size.width / shown.width,
                                   inY * frame.size.height / shown.height);
        else
          std::memset(&expected, untouched, static_cast<std::size_t>(layout.bytes));
        ASSERT_EQ(expected, value) << "step " << step << " at " << x << ", " << y;
      }
      for (int i = size.width * layout.bytes; i < pitch; ++i) ASSERT_EQ(untouched, row[i]);
    }
  }
}

TEST(FrameScaler, FillsAnAreaByWholeFactorsOrInProportion) {
  struct Case {
    Extent frame, area;
    Area expected;
  };
  constexpr Case cases[] = {
      {{640, 480}, {640, 480}, {0, 0, {640, 480}}},     {{640, 480}, {1920, 1080}, {320, 60, {1280, 960}}},
      {{320, 200}, {1024, 768}, {32, 84, {960, 600}}},  {{640, 480}, {1279, 959}, {319, 239, {640, 480}}},
      {{1280, 1024}, {1024, 768}, {32, 0, {960, 768}}}, {{1920, 800}, {1024, 768}, {0, 171, {1024, 426}}},
      {{640, 480}, {640, 479}, {1, 0, {638, 479}}},     {{1000, 1}, {10, 10}, {0, 4, {10, 1}}},
  };
  for (const Case& test : cases) {
    const Area place = fitFrame(test.frame, test.area);
    EXPECT_EQ(test.expected.x, place.x);
    EXPECT_EQ(test.expected.y, place.y);
    EXPECT_EQ(test.expected.size.width, place.size.width);
    EXPECT_EQ(test.expected.size.height, place.size.height);

    // Around it all is black and within it nothing is touched.
    std::vector<std::uint8_t> memory(static_cast<std::size_t>(test.area.width * test.area.height * 2), 1);
    blackenAround({memory.data(), test.area, test.area.width * 2, 2, {}, {}, {}}, place);
    std::size_t left = 0;
    for (const std::uint8_t byte : memory) left += byte;
    EXPECT_EQ(static_cast<std::size_t>(place.size.width * place.size.height * 2), left);
    const auto corner = static_cast<std::size_t>((place.y * test.area.width + place.x) * 2);
    EXPECT_EQ(1, memory[corner]);
  }
}

TEST(DisplayWithoutVideo, HasNoModesAndNoWindowsAndSaysNothing) {
  ScreenMethods methods{};
  methods.version = 0x10000;
  Screen* screen = nullptr;
  ASSERT_EQ(0u, KX_createScreen(&screen, nullptr, 0, &methods));
  ASSERT_EQ(0, setenv("SDL_VIDEODRIVER", "no such driver", 1));
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  VideoMode* list = nullptr;
  std::int32_t count = -1;
  EXPECT_EQ(0u, KX_getVideoModeList(screen, &list, &count));
  EXPECT_EQ(0, count);
  mmgr_free(list);
  std::uint64_t nothing[64] = {};
  EXPECT_EQ(7u, KX_setMode(screen, nothing, KX_MODE_WINDOWED, nullptr));
  EXPECT_EQ("", testing::internal::GetCapturedStdout());
  EXPECT_EQ("", testing::internal::GetCapturedStderr());
  EXPECT_EQ(0u, KX_deleteScreen(screen));
}

}  // namespace
