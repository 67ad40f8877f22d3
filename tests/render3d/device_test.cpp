// Devices on bitmaps and screens, the clip rectangle, clearing, and the floating-point modes of rendering.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/float_control.h"
#include "render3d/scene.h"
#include "render3d/stub_bitmaps.h"
#include "support/allocation_sweep.h"
#include "support/test_heap.h"

namespace {

using namespace kxtest;

class Devices : public testing::Test {
protected:
  void SetUp() override {
    blocks_ = liveBlocks();
    ASSERT_EQ(0u, KX_createBitmap(&target, 40, 30, KX_FORMAT_565, 11, 12, &stub.methods));
    ASSERT_EQ(0u, KX_createBitmap(&other, 20, 50, KX_FORMAT_555, 0, 0, &stub.methods));
    screen.version = 0x10000;
    screen.modeFlags = 1;
    screen.bufferCount = 2;
    screen.front = other;
    screen.back = target;
  }
  void TearDown() override {
    EXPECT_EQ(0u, KX_deleteBitmap(target));
    EXPECT_EQ(0u, KX_deleteBitmap(other));
    EXPECT_EQ(blocks_, liveBlocks());
  }

  StubBitmaps stub;
  Bitmap* target = nullptr;
  Bitmap* other = nullptr;
  Screen screen = {};
  Device3D* device = nullptr;

private:
  std::size_t blocks_ = 0;
};

TEST_F(Devices, RefuseWhatTheyCannotDrawOn) {
  const auto create = [&] { return KX_create3DDevice(&device, target, 1, 2, 0, deviceMethods()); };
  const auto createOnScreen = [&] { return KX_create3DDevice_Screen(&device, &screen, 1, 2, 0, deviceMethods()); };
  DeviceMethods later = *deviceMethods();
  later.version = 0x10001;
  DeviceMethods earlier = *deviceMethods();
  earlier.version = 0xFFFF;
  EXPECT_EQ(7u, KX_create3DDevice(nullptr, target, 1, 2, 0, deviceMethods()));
  EXPECT_EQ(7u, KX_create3DDevice(&device, nullptr, 1, 2, 0, &later));
  EXPECT_EQ(7u, KX_create3DDevice(&device, target, 1, 2, 0, nullptr));
  EXPECT_EQ(7u, KX_create3DDevice_Screen(&device, nullptr, 1, 2, 0, deviceMethods()));
  EXPECT_EQ(4u, KX_create3DDevice(&device, target, 1, 2, 0, &later));
  EXPECT_EQ(4u, KX_create3DDevice(&device, target, 1, 2, 0, &earlier));

  struct Case {
    std::uint32_t format, code;
  };
  for (const Case& c :
       {Case{KX_FORMAT_MONO, 0x2000}, Case{KX_FORMAT_GREY, 0x2000}, Case{KX_FORMAT_888, 0x2000},
        Case{KX_FORMAT_888 | 0x10, 0x2000}, Case{KX_FORMAT_565 | 0x10, 8}, Case{KX_FORMAT_555 | 0x20, 8}}) {
    target->format = c.format;
    EXPECT_EQ(c.code, create());
    EXPECT_EQ(c.code, createOnScreen());
  }
  screen.modeFlags = 0;
  EXPECT_EQ(0x4003u, createOnScreen()) << "the mode is tested before the format";
  screen.modeFlags = 1;
  screen.back = nullptr;
  EXPECT_EQ(0x4003u, createOnScreen());
  EXPECT_EQ(4u, KX_create3DDevice_Screen(&device, &screen, 1, 2, 0, &later));
  EXPECT_EQ(nullptr, device);
  target->format = KX_FORMAT_565;
}

TEST_F(Devices, StartWithTheWholeTarget) {
  ASSERT_EQ(0u, KX_create3DDevice(&device, target, 21, 22, 1, deviceMethods()));
  EXPECT_EQ(deviceMethods(), device->methods);
  EXPECT_EQ(0x10000u, device->version);
  EXPECT_EQ(0, device->clipLeft);
  EXPECT_EQ(39, device->clipRight);
  EXPECT_EQ(0, device->clipTop);
  EXPECT_EQ(29, device->clipBottom);
  EXPECT_EQ(target, device->target);
  EXPECT_EQ(nullptr, device->screen);
  EXPECT_EQ(21u, device->parameter1);
  EXPECT_EQ(22u, device->parameter2);
  EXPECT_EQ(0, device->renderingDepth);
  EXPECT_EQ("c", stub.log) << "the Z buffer is made through the target's table";
  EXPECT_EQ(0x883u, device->zBuffer->format);
  EXPECT_EQ(40, stub.createdWidth);
  EXPECT_EQ(30, stub.createdHeight);
  EXPECT_EQ(11u, stub.createdExtra1);
  EXPECT_EQ(12u, stub.createdExtra2);
  EXPECT_EQ(&stub.methods, device->zBuffer->methods);

  stub.fail('d', 1, 0x77);
  EXPECT_EQ(0x77u, KX_delete3DDevice(device)) << "and the device is kept";
  EXPECT_EQ(0u, KX_delete3DDevice(device));
  EXPECT_EQ(7u, KX_delete3DDevice(nullptr));
}

TEST_F(Devices, OfAScreenFollowItsBackBuffer) {
  ASSERT_EQ(0u, KX_create3DDevice_Screen(&device, &screen, 0, 0, 0, deviceMethods()));
  EXPECT_EQ(nullptr, device->target);
  EXPECT_EQ(&screen, device->screen);
  EXPECT_EQ(39, device->clipRight);
  EXPECT_EQ(0u, KX_setClipRect(device, 0, 0, 39, 29));
  EXPECT_EQ(0x2005u, KX_setClipRect(device, 0, 0, 19, 49));
  screen.back = other;
  EXPECT_EQ(0x2005u, KX_setClipRect(device, 0, 0, 39, 29));
  EXPECT_EQ(0u, KX_setClipRect(device, 0, 0, 19, 49));
  EXPECT_EQ(0u, KX_clear3DDevice(device, 0x1234));
  EXPECT_EQ(20, stub.filledRect[2]);
  EXPECT_EQ(50, stub.filledRect[3]);
  screen.modeFlags = 0;
  EXPECT_EQ(0x4003u, KX_setClipRect(device, 0, 0, 1, 1));
  EXPECT_EQ(0x4003u, KX_clear3DDevice(device, 0));
  EXPECT_EQ(0u, KX_delete3DDevice(device));
}

TEST_F(Devices, ClipRectangles) {
  ASSERT_EQ(0u, KX_create3DDevice(&device, target, 0, 0, 0, deviceMethods()));
  struct Case {
    std::int32_t left, top, right, bottom;
    std::uint32_t code;
  };
  constexpr Case cases[] = {{0, 0, 39, 29, 0},           {3, 4, 3, 4, 0},        {-1, 0, 5, 5, 0x2005},
                            {0, -1, 5, 5, 0x2005},       {6, 0, 5, 5, 0x2005},   {0, 6, 5, 5, 0x2005},
                            {0, 0, 40, 29, 0x2005},      {0, 0, 39, 30, 0x2005}, {0, 0, INT32_MAX, 2, 0x2005},
                            {INT32_MIN, 0, 5, 5, 0x2005}};
  for (const Case& c : cases) EXPECT_EQ(c.code, KX_setClipRect(device, c.left, c.top, c.right, c.bottom));
  EXPECT_EQ(3, device->clipLeft) << "a refused rectangle changes nothing";
  EXPECT_EQ(4, device->clipTop);
  EXPECT_EQ(3, device->clipRight);
  EXPECT_EQ(4, device->clipBottom);
  EXPECT_EQ(7u, KX_setClipRect(nullptr, 0, 0, 1, 1));
  EXPECT_EQ(0u, KX_delete3DDevice(device));
}

TEST_F(Devices, ClearTargetAndZBuffer) {
  ASSERT_EQ(0u, KX_create3DDevice(&device, target, 0, 0, 1, deviceMethods()));
  EXPECT_EQ(7u, KX_clear3DDevice(nullptr, 0));
  device->renderingDepth = 3;
  for (const int failing : {1, 2}) {
    stub.log.clear();
    stub.fail('f', failing, 0x55);
    EXPECT_EQ(0x55u, KX_clear3DDevice(device, 0x4321));
    EXPECT_EQ(failing, static_cast<int>(stub.log.size())) << "the first failure ends it";
    EXPECT_EQ(3, device->renderingDepth);
  }
  EXPECT_EQ(0u, KX_clear3DDevice(device, 0x4321));
  EXPECT_EQ(0xFFu, stub.filledColour) << "the Z buffer comes second, to the farthest depth";
  EXPECT_EQ(0, device->renderingDepth);
  EXPECT_EQ(0u, KX_delete3DDevice(device));
}

TEST_F(Devices, NeedTheTableOfTheirTarget) {
  ASSERT_EQ(0u, KX_create3DDevice(&device, target, 0, 0, 0, deviceMethods()));
  target->methods = nullptr;
  const std::size_t mark = allocationMark();
  Device3D* deep = nullptr;
  Texture* texture = nullptr;
  EXPECT_EQ(5u, KX_create3DDevice(&deep, target, 0, 0, 1, deviceMethods()));
  EXPECT_EQ(5u, KX_createTexture(&texture, device, 8, 8, KX_FORMAT_565, 1));
  EXPECT_EQ(5u, KX_clear3DDevice(device, 0));
  freeBlocksSince(mark);
  target->methods = &stub.methods;
  EXPECT_EQ(0u, KX_delete3DDevice(device));
}

TEST_F(Devices, RunOutOfMemory) {
  device = garbagePointer<Device3D>();
  const auto create = [&] { return KX_create3DDevice(&device, target, 0, 0, 1, deviceMethods()); };
  sweepAllocations({.call = create,
                    .release = [&] { KX_delete3DDevice(device); },
                    .untouched = {bytesOf(device)},
                    // The record stays when its Z buffer cannot be made.
                    .leaked = [](unsigned k) { return std::size_t{k > 1}; }});
}

TEST_F(Devices, RenderingSwitchesTheFloatingPointModes) {
  using namespace kx::platform;
  ASSERT_EQ(0u, KX_create3DDevice(&device, target, 0, 0, 0, deviceMethods()));
  EXPECT_EQ(7u, KX_beginRendering(nullptr));
  EXPECT_EQ(7u, KX_endRendering(nullptr));
  EXPECT_EQ(0x200Fu, KX_endRendering(device));
  const std::uint16_t x87 = x87ControlWord();
  const std::uint32_t sse = sseControl();
  // Rounding up, double precision and one exception unmasked; rounding down in the SSE unit.
  constexpr std::uint16_t strangeX87 = 0x0A3E;
  constexpr std::uint32_t strangeSse = 0x3F80;
  setX87ControlWord(strangeX87);
  setSseControl(strangeSse);
  const std::uint16_t setWord = x87ControlWord();

  EXPECT_EQ(0u, KX_beginRendering(device));
  const std::uint16_t rendering = x87ControlWord();
  const std::uint32_t renderingSse = sseControl();
  EXPECT_EQ(0u, KX_beginRendering(device));
  EXPECT_EQ(2, device->renderingDepth);
  EXPECT_EQ(0u, KX_endRendering(device));
  const std::uint16_t stillRendering = x87ControlWord();
  EXPECT_EQ(0u, KX_endRendering(device));
  const std::uint16_t after = x87ControlWord();
  const std::uint32_t afterSse = sseControl();
  const std::uint32_t onceMore = KX_endRendering(device);
  setX87ControlWord(x87);
  setSseControl(sse);

  EXPECT_EQ(setWord, device->savedControlWord);
  EXPECT_EQ(x87ExceptionMasks, rendering & (x87ExceptionMasks | x87PrecisionControl | x87RoundingControl));
  EXPECT_EQ(0u, renderingSse & sseRoundingControl);
  EXPECT_EQ(rendering, stillRendering) << "inner pairs change nothing";
  EXPECT_EQ(setWord, after);
  EXPECT_EQ(strangeSse & sseRoundingControl, afterSse & sseRoundingControl);
  EXPECT_EQ(0x200Fu, onceMore);
  EXPECT_EQ(0u, KX_delete3DDevice(device));
}

}  // namespace
