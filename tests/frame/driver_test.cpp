// Filling method tables: with the library's own functions and from driver libraries.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstring>

#include "kxgraphic/kxgraphic.h"

TEST(MethodTables, OwnFunctionsFillEverySlotWithoutADriver) {
  BitmapMethods bitmap;
  std::memset(&bitmap, 0xEE, sizeof bitmap);
  EXPECT_EQ(1, KX_getBitmapInterface(&bitmap, nullptr, nullptr, 1));
  EXPECT_EQ(0x10000u, bitmap.version);
  EXPECT_EQ(&KX_getDriverTechnology, bitmap.getDriverTechnology);
  EXPECT_EQ(&KX_moveRect, bitmap.moveRect);
  EXPECT_NE(nullptr, bitmap.mixDelta);

  DeviceMethods device;
  EXPECT_EQ(1, KX_get3DDeviceInterface(&device, nullptr, nullptr, 0));
  EXPECT_EQ(&KX_cameraTransformAndProject, device.cameraTransformAndProject);
}
