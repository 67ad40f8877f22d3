// Cameras: defaults, refusals, and the way of points compared with the formulas in double precision.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "render3d/scene.h"
#include "support/allocation_sweep.h"

namespace {

using namespace kxtest;

class Cameras : public testing::Test {
protected:
  void SetUp() override {
    device.methods = deviceMethods();
    ASSERT_EQ(0u, KX_createCamera(&camera, &device));
  }
  void TearDown() override { EXPECT_EQ(0u, KX_deleteCamera(camera)); }

  Device3D device = {};
  Camera* camera = nullptr;
};

/// The point in the camera's space: the world is moved, its y axis turned over, then turned by b about y, a about x and
/// c about z.
struct Turned {
  double x, y, z;
};
Turned turn(const float (&p)[3], const float (&position)[6], const float (&angles)[6]) {
  const double dx = double{p[0]} - position[0], dy = double{position[1]} - p[1], dz = double{p[2]} - position[2];
  const double a = angles[0], b = angles[1], c = angles[2];
  const double x1 = std::cos(b) * dx + std::sin(b) * dz;
  const double z1 = -std::sin(b) * dx + std::cos(b) * dz;
  const double y2 = std::cos(a) * dy + std::sin(a) * z1;
  const double z2 = -std::sin(a) * dy + std::cos(a) * z1;
  return {std::cos(c) * x1 + std::sin(c) * y2, -std::sin(c) * x1 + std::cos(c) * y2, z2};
}

TEST_F(Cameras, StartWithDefaults) {
  for (const float p : camera->parameters) EXPECT_EQ(1.0f, p);
  float point[3] = {3, 4, 5};
  EXPECT_EQ(0u, KX_cameraTransform(camera, point));
  for (const float p : point) EXPECT_EQ(0.0f, p);
  float ahead[3] = {3, 4, 5};
  EXPECT_EQ(0u, KX_cameraProject(camera, ahead));
  EXPECT_EQ(0.0f, ahead[0]);
  EXPECT_EQ(0.0f, ahead[1]);
  EXPECT_EQ(5.0f, ahead[2]);
}

TEST_F(Cameras, TransformAndProjectLikeTheFormulas) {
  Random random(7);
  const auto real = [&](float low, float high) {
    return low + (high - low) * static_cast<float>(random.between(0, 100000)) / 100000.0f;
  };
  for (int round = 0; round < 200; ++round) {
    const float position[6] = {real(-50, 50), real(-50, 50), real(-50, 50), 1, 2, 3};
    const float angles[6] = {real(-4, 4), real(-4, 4), real(-4, 4), 4, 5, 6};
    const float distance = real(1, 9), viewWidth = real(1, 9), viewHeight = real(1, 9);
    ASSERT_EQ(0u, KX_cameraSetPosition(camera, position));
    ASSERT_EQ(0u, KX_cameraSetRotation(camera, angles));
    ASSERT_EQ(0u, KX_cameraSetParameter(camera, distance, viewWidth, viewHeight, 640, 480));
    EXPECT_EQ(3.0f, camera->position[5]);
    EXPECT_EQ(6.0f, camera->rotation[5]);
    const float world[3] = {real(-99, 99), real(-99, 99), real(-99, 99)};
    const Turned expected = turn(world, position, angles);
    float seen[3] = {world[0], world[1], world[2]};
    ASSERT_EQ(0u, KX_cameraTransform(camera, seen));
    EXPECT_NEAR(expected.x, seen[0], 1e-3);
    EXPECT_NEAR(expected.y, seen[1], 1e-3);
    EXPECT_NEAR(expected.z, seen[2], 1e-3);
    if (std::abs(seen[2]) < 1) continue;
    float projected[3] = {seen[0], seen[1], seen[2]};
    ASSERT_EQ(0u, KX_cameraProject(camera, projected));
    const double x = seen[0] * (double{distance} * 640 / viewWidth) / seen[2] + 320;
    const double y = seen[1] * (double{distance} * 480 / viewHeight) / seen[2] + 240;
    EXPECT_NEAR(x, projected[0], 1e-5 * (std::abs(x) + 320));
    EXPECT_NEAR(y, projected[1], 1e-5 * (std::abs(y) + 240));
    EXPECT_EQ(seen[2], projected[2]);
    float both[3] = {world[0], world[1], world[2]};
    ASSERT_EQ(0u, KX_cameraTransformAndProject(camera, both));
    EXPECT_EQ(projected[0], both[0]);
    EXPECT_EQ(projected[1], both[1]);
  }
}

TEST_F(Cameras, ZoomAndRotateWaitForTheNextSetting) {
  const float zero[6] = {};
  ASSERT_EQ(0u, KX_cameraSetRotation(camera, zero));
  ASSERT_EQ(0u, KX_cameraSetParameter(camera, 2, 1, 1, 10, 10));
  const Camera before = *camera;
  const float more[3] = {1, 2, 3};
  EXPECT_EQ(0u, KX_cameraRotate(camera, more));
  EXPECT_EQ(0u, KX_cameraRotate(camera, more));
  EXPECT_EQ(0u, KX_cameraMove(camera, more));
  EXPECT_EQ(0u, KX_cameraZoom(camera, 3));
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(2 * more[i], camera->rotation[i]);
    EXPECT_EQ(more[i], camera->position[i]) << "a move counts at once";
  }
  for (int i = 0; i < 9; ++i) EXPECT_EQ(before.matrix[i], camera->matrix[i]);
  EXPECT_EQ(6.0f, camera->parameters[0]);
  EXPECT_EQ(before.scaleX, camera->scaleX);
  EXPECT_EQ(before.scaleY, camera->scaleY);
}

TEST_F(Cameras, RefuseBadArguments) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  float six[6] = {};
  EXPECT_EQ(7u, KX_createCamera(nullptr, &device));
  EXPECT_EQ(7u, KX_createCamera(&camera, nullptr));
  EXPECT_EQ(7u, KX_deleteCamera(nullptr));
  for (const auto call : {KX_cameraSetPosition, KX_cameraSetRotation, KX_cameraMove, KX_cameraRotate}) {
    EXPECT_EQ(7u, call(nullptr, six));
    EXPECT_EQ(7u, call(camera, nullptr));
  }
  for (const auto call : {KX_cameraTransform, KX_cameraProject, KX_cameraTransformAndProject}) {
    EXPECT_EQ(7u, call(nullptr, six));
    EXPECT_EQ(7u, call(camera, nullptr));
  }
  const float good[5] = {1, 1, 1, 1, 1};
  for (int i = 0; i < 5; ++i) {
    for (const float bad : {0.99f, 0.0f, -5.0f, nan}) {
      float p[5] = {2, 2, 2, 2, 2};
      p[i] = bad;
      EXPECT_EQ(7u, KX_cameraSetParameter(camera, p[0], p[1], p[2], p[3], p[4]));
      EXPECT_TRUE(std::equal(good, good + 5, camera->parameters)) << "nothing is stored";
    }
  }
  EXPECT_EQ(7u, KX_cameraSetParameter(nullptr, 1, 1, 1, 1, 1));
  EXPECT_EQ(7u, KX_cameraZoom(nullptr, 1));
  EXPECT_EQ(7u, KX_cameraZoom(camera, 0));
  EXPECT_EQ(7u, KX_cameraZoom(camera, -1));
  EXPECT_EQ(0u, KX_cameraZoom(camera, nan)) << "a NaN is not refused";

  float flat[3] = {1, 2, 0};
  EXPECT_EQ(0x2007u, KX_cameraProject(camera, flat));
  EXPECT_EQ(1.0f, flat[0]);
  flat[2] = -0.0f;
  EXPECT_EQ(0x2007u, KX_cameraProject(camera, flat));
  float behind[3] = {1, 1, -1};
  EXPECT_EQ(0u, KX_cameraProject(camera, behind));
}

std::string driverLog;

std::uint32_t KX_CALL driverTransform(Camera*, float* point) {
  driverLog += 't';
  return point[0] < 0 ? 0x42 : 0;
}

std::uint32_t KX_CALL driverProject(Camera*, float*) {
  driverLog += 'p';
  return 0x43;
}

TEST_F(Cameras, UseTheFunctionsOfTheirDevice) {
  DeviceMethods driver = *deviceMethods();
  driver.cameraTransform = driverTransform;
  driver.cameraProject = driverProject;
  device.methods = &driver;
  float point[3] = {1, 1, 1};
  EXPECT_EQ(0x43u, KX_cameraTransformAndProject(camera, point));
  EXPECT_EQ("tp", driverLog);
  point[0] = -1;
  EXPECT_EQ(0x42u, KX_cameraTransformAndProject(camera, point));
  EXPECT_EQ("tpt", driverLog);
  camera->device = nullptr;
  EXPECT_EQ(7u, KX_cameraTransformAndProject(camera, point));
}

TEST_F(Cameras, RunOutOfMemory) {
  Camera* made = garbagePointer<Camera>();
  sweepAllocations({.call = [&] { return KX_createCamera(&made, &device); },
                    .release = [&] { KX_deleteCamera(made); },
                    .untouched = {bytesOf(made)}});
}

}  // namespace
