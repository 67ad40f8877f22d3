// Filling method tables: with the library's own functions and from driver libraries.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "kxgraphic/kxgraphic.h"
#include "symbols.h"

namespace {

constexpr const char* missingDriver = "./no_such_driver.bin";

/// A table as its version and slots, filled with rubbish before the library writes it.
template <typename Methods>
struct Table {
  Table() { std::memset(&methods, 0xEE, sizeof methods); }

  [[nodiscard]] std::vector<void*> slots() const {
    std::vector<void*> result(sizeof(Methods) / sizeof(void*) - 1);
    std::memcpy(result.data(), reinterpret_cast<const char*>(&methods) + sizeof(void*), result.size() * sizeof(void*));
    return result;
  }

  [[nodiscard]] std::size_t filled() const {
    std::size_t count = 0;
    for (const void* slot : slots()) count += slot != nullptr;
    return count;
  }

  /// The version and, where pointers are wider, zero after it.
  [[nodiscard]] bool headIsRight() const {
    std::uintptr_t head = 0;
    std::memcpy(&head, &methods, sizeof head);
    return head == 0x10000;
  }

  Methods methods;
};

struct BitmapTable : Table<BitmapMethods> {
  std::uint8_t fill(const char* driver, const char* prefix, std::uint8_t driverOnly) {
    return KX_getBitmapInterface(&methods, driver, prefix, driverOnly);
  }
};

struct DeviceTable : Table<DeviceMethods> {
  std::uint8_t fill(const char* driver, const char* prefix, std::uint8_t driverOnly) {
    return KX_get3DDeviceInterface(&methods, driver, prefix, driverOnly);
  }
};

struct ScreenTable : Table<ScreenMethods> {
  std::uint8_t fill(const char* driver, const char* prefix) { return KX_getScreenInterface(&methods, driver, prefix); }
};

TEST(MethodTables, OwnFunctionsFillEverySlotWithoutADriver) {
  for (const std::uint8_t driverOnly : std::vector<std::uint8_t>{0, 1, 255}) {
    BitmapTable bitmap;
    EXPECT_EQ(1, bitmap.fill(nullptr, nullptr, driverOnly));
    EXPECT_TRUE(bitmap.headIsRight());
    EXPECT_EQ(78u, bitmap.filled());
    EXPECT_EQ(0u, bitmap.methods.getDriverTechnology());

    DeviceTable device;
    EXPECT_EQ(1, device.fill(nullptr, "ignored", driverOnly));
    EXPECT_TRUE(device.headIsRight());
    EXPECT_EQ(45u, device.filled());
  }
}

TEST(MethodTables, TheScreenTableHasNoFunctionsOfItsOwn) {
  ScreenTable screen;
  EXPECT_EQ(0, screen.fill(nullptr, "KX"));
  EXPECT_TRUE(screen.headIsRight());
  EXPECT_EQ(0u, screen.filled());

  EXPECT_EQ(1, screen.fill(KX_DRIVER_UNNAMED, nullptr));
  EXPECT_EQ(1u, screen.filled());
  ASSERT_NE(nullptr, screen.methods.flip);
  EXPECT_EQ(42u, screen.methods.flip(nullptr, 41));
}

TEST(MethodTables, ADriverThatCannotBeLoadedLeavesThemEmpty) {
  for (const char* driver : {missingDriver, ""}) {
    BitmapTable bitmap;
    EXPECT_EQ(0, bitmap.fill(driver, "KX", 0));
    EXPECT_TRUE(bitmap.headIsRight());
    EXPECT_EQ(0u, bitmap.filled());
    DeviceTable device;
    EXPECT_EQ(0, device.fill(driver, "KX", 0));
    EXPECT_EQ(0u, device.filled());
    ScreenTable screen;
    EXPECT_EQ(0, screen.fill(driver, "KX"));
    EXPECT_TRUE(screen.headIsRight());
    EXPECT_EQ(0u, screen.filled());
  }
}

TEST(MethodTables, ADriverSuppliesWhatItExports) {
  BitmapTable own;
  own.fill(nullptr, nullptr, 0);
  auto expected = own.slots();

  BitmapTable mixed;
  EXPECT_EQ(1, mixed.fill(KX_DRIVER_LOCKS, "game", 0));
  EXPECT_EQ(0x111u, mixed.methods.lock(nullptr));
  EXPECT_EQ(0x222u, mixed.methods.unlock(nullptr));
  constexpr std::size_t lockSlot = 8;
  expected[lockSlot] = mixed.slots()[lockSlot];
  expected[lockSlot + 1] = mixed.slots()[lockSlot + 1];
  EXPECT_EQ(expected, mixed.slots());

  BitmapTable alone;
  EXPECT_EQ(1, alone.fill(KX_DRIVER_LOCKS, "game", 1));
  EXPECT_EQ(2u, alone.filled());
  EXPECT_EQ(0x111u, alone.methods.lock(nullptr));

  EXPECT_EQ(1, alone.fill(KX_DRIVER_LOCKS, "gam", 1));
  EXPECT_EQ(0u, alone.filled());
  const std::string longPrefix(100000, 'g');
  EXPECT_EQ(1, alone.fill(KX_DRIVER_LOCKS, longPrefix.c_str(), 1));
  EXPECT_EQ(0u, alone.filled());
}

TEST(MethodTables, ANullPrefixMeansTwoUnderscores) {
  BitmapTable bitmap;
  EXPECT_EQ(1, bitmap.fill(KX_DRIVER_UNNAMED, nullptr, 1));
  EXPECT_EQ(1u, bitmap.filled());
  EXPECT_EQ(42u, bitmap.methods.createBitmap(nullptr, 6, 7, 0, 0, 0, nullptr));
  EXPECT_EQ(1, bitmap.fill(KX_DRIVER_UNNAMED, "", 1));
  EXPECT_EQ(1u, bitmap.filled());

  DeviceTable device;
  EXPECT_EQ(1, device.fill(KX_DRIVER_UNNAMED, nullptr, 1));
  EXPECT_EQ(1u, device.filled());
  float point = 7;
  EXPECT_EQ(7u, device.methods.cameraTransformAndProject(nullptr, &point));
}

TEST(MethodTables, TheLibraryIsADriverOfItself) {
  BitmapTable own, driven;
  own.fill(nullptr, nullptr, 0);
  EXPECT_EQ(1, driven.fill(KX_LIBRARY, "KX", 1));
  EXPECT_EQ(own.slots(), driven.slots());

  DeviceTable ownDevice, drivenDevice;
  ownDevice.fill(nullptr, nullptr, 0);
  EXPECT_EQ(1, drivenDevice.fill(KX_LIBRARY, "KX", 1));
  EXPECT_EQ(ownDevice.slots(), drivenDevice.slots());

  ScreenTable screen;
  EXPECT_EQ(1, screen.fill(KX_LIBRARY, "KX"));
  EXPECT_EQ(10u, screen.filled());
}

TEST(MethodTables, ALibraryThatTheDriverUsesIsNotTheDriver) {
  BitmapTable layer;
  EXPECT_EQ(1, layer.fill(KX_DRIVER_LAYER, "KX", 1));
  EXPECT_EQ(1u, layer.filled());
  ASSERT_NE(nullptr, layer.methods.lock);
  EXPECT_EQ(0x1007u, layer.methods.lock(nullptr));
}

TEST(MethodTables, SlotsStandInTheirPlaces) {
  struct Place {
    std::size_t slot;
    const char* name;
    unsigned argumentBytes;
  };
  const auto expectPlaces = [](const auto& slots, std::initializer_list<Place> places) {
    for (const Place& place : places)
      EXPECT_EQ(kxtest::driverSymbol(place.name, place.argumentBytes), slots[place.slot - 1]) << place.name;
  };
  BitmapTable bitmap;
  bitmap.fill(nullptr, nullptr, 0);
  expectPlaces(bitmap.slots(), {{1, "KX_getDriverTechnology", 0},
                                {2, "KX_createBitmap", 28},
                                {3, "KX_createFromData", 16},
                                {4, "KX_cloneBitmap", 12},
                                {5, "KX_deleteBitmap", 4},
                                {6, "KX_setPalette", 8},
                                {7, "KX_setPaletteReference", 20},
                                {8, "KX_getBitmapSize", 8},
                                {9, "KX_lock", 4},
                                {10, "KX_unlock", 4},
                                {11, "KX_bltCopy", 32},
                                {12, "KX_bltCopyZBuffer", 40},
                                {13, "KX_bltCopyZMap", 44},
                                {25, "KX_bltCopyAlphamapZMap", 48},
                                {26, "KX_moveRect", 28},
                                {27, "KX_bltStretch", 40},
                                {41, "KX_bltStretchAlphamapZMap", 56},
                                {42, "KX_getPixel", 12},
                                {47, "KX_drawLine", 24},
                                {62, "KX_drawPatternLineTransparentAlphaZBuffer", 40},
                                {67, "KX_floodFill", 20},
                                {70, "KX_changeBrightnessContrastTransparent", 16},
                                {78, "KX_mixDelta", 8}});
  DeviceTable device;
  device.fill(nullptr, nullptr, 0);
  expectPlaces(device.slots(), {{1, "KX_getDriverTechnology", 0},
                                {3, "KX_create3DDevice_Screen", 24},
                                {10, "KX_deleteTexture", 4},
                                {11, "KX_drawTriangleFlatShade", 16},
                                {20, "KX_drawTexturedTriangleGouraudShade", 16},
                                {34, "KX_drawTexturedTriangleGouraudShadeTransparentAlphaZBuffer", 20},
                                {35, "KX_createCamera", 8},
                                {39, "KX_cameraSetParameter", 24},
                                {45, "KX_cameraTransformAndProject", 8}});
  ScreenTable screen;
  screen.fill(KX_LIBRARY, "KX");
  expectPlaces(screen.slots(), {{2, "KX_createScreen", 16}, {7, "KX_flip", 8}, {10, "KX_waitForVerticalBlankEnd", 4}});
}

TEST(MethodTables, BadTablesAreRefused) {
  EXPECT_EQ(0, KX_getBitmapInterface(nullptr, nullptr, nullptr, 0));
  EXPECT_EQ(0, KX_get3DDeviceInterface(nullptr, nullptr, nullptr, 0));
  EXPECT_EQ(0, KX_getScreenInterface(nullptr, nullptr, nullptr));
}

}  // namespace
