// Cameras: position, angles and projection, and the way of a point from the world to the screen.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <iterator>

#include "frame/checks.h"
#include "frame/heap.h"
#include "kxgraphic/kxgraphic.h"

namespace kx {

namespace {

enum Parameter { Distance, ViewWidth, ViewHeight, ScreenWidth, ScreenHeight };

/// A camera that is used and three or six floats that are read.
Result checkReading(const Camera* camera, const float* values) {
  return isBadWritePointer(camera) || isBadReadPointer(values) ? Result::IllegalParameter : Result::Ok;
}

Result createCamera(Camera** result, Device3D* device) {
  KX_TRY(checkWritable(result, device));
  HeapRecord<Camera> camera = makeRecord<Camera>();
  if (camera == nullptr) return Result::OutOfMemory;
  camera->device = device;
  std::fill(std::begin(camera->parameters), std::end(camera->parameters), 1.0f);
  *result = camera.release();
  return Result::Ok;
}

Result deleteCamera(Camera* camera) {
  KX_TRY(checkWritable(camera));
  mmgr_free(camera);
  return Result::Ok;
}

Result setPosition(Camera* camera, const float* position) {
  KX_TRY(checkReading(camera, position));
  std::copy_n(position, std::size(camera->position), camera->position);
  return Result::Ok;
}

void buildMatrix(Camera* camera) {
  const double sa = std::sin(static_cast<double>(camera->rotation[0]));
  const double ca = std::cos(static_cast<double>(camera->rotation[0]));
  const double sb = std::sin(static_cast<double>(camera->rotation[1]));
  const double cb = std::cos(static_cast<double>(camera->rotation[1]));
  const double sc = std::sin(static_cast<double>(camera->rotation[2]));
  const double cc = std::cos(static_cast<double>(camera->rotation[2]));
  const double matrix[] = {
      cb * cc - sb * sa * sc,
      ca * sc,
      sb * cc + cb * sa * sc,  //
      -cb * sc - sb * sa * cc,
      ca * cc,
      cb * sa * cc - sb * sc,  //
      -sb * ca,
      -sa,
      cb * ca,
  };
  std::transform(std::begin(matrix), std::end(matrix), camera->matrix, [](double m) { return static_cast<float>(m); });
}

Result setRotation(Camera* camera, const float* rotation) {
  KX_TRY(checkReading(camera, rotation));
  std::copy_n(rotation, std::size(camera->rotation), camera->rotation);
  buildMatrix(camera);
  return Result::Ok;
}

Result setParameter(Camera* camera, const float (&parameters)[5]) {
  KX_TRY(checkWritable(camera));
  // "At least 1" is false for a NaN too.
  if (!std::all_of(std::begin(parameters), std::end(parameters), [](float p) { return p >= 1.0f; }))
    return Result::IllegalParameter;
  std::copy(std::begin(parameters), std::end(parameters), camera->parameters);
  camera->scaleX = parameters[Distance] * parameters[ScreenWidth] / parameters[ViewWidth];
  camera->scaleY = parameters[Distance] * parameters[ScreenHeight] / parameters[ViewHeight];
  camera->centreX = parameters[ScreenWidth] * 0.5f;
  camera->centreY = parameters[ScreenHeight] * 0.5f;
  return Result::Ok;
}

Result addTo(Camera* camera, float (Camera::*sums)[6], const float* terms) {
  KX_TRY(checkReading(camera, terms));
  for (int i = 0; i < 3; ++i) (camera->*sums)[i] += terms[i];
  return Result::Ok;
}

/// Settled: the scales are derived anew by the next KX_cameraSetParameter only, and a NaN counts as positive.
Result zoom(Camera* camera, float factor) {
  KX_TRY(checkWritable(camera));
  if (factor <= 0.0f) return Result::IllegalParameter;
  camera->parameters[Distance] *= factor;
  return Result::Ok;
}

Result transform(Camera* camera, float* point) {
  KX_TRY(checkWritable(camera, point));
  const float* m = camera->matrix;
  const float dx = point[0] - camera->position[0];
  const float dy = camera->position[1] - point[1];  // the world's y axis points up, the screen's down
  const float dz = point[2] - camera->position[2];
  point[0] = m[0] * dx + m[1] * dy + m[2] * dz;
  point[1] = m[3] * dx + m[4] * dy + m[5] * dz;
  point[2] = m[6] * dx + m[7] * dy + m[8] * dz;
  return Result::Ok;
}

/// Points behind the camera are projected too, mirrored.
Result project(Camera* camera, float* point) {
  KX_TRY(checkWritable(camera, point));
  if (point[2] == 0.0f) return Result::ZValueOutOfRange;
  point[0] = point[0] * camera->scaleX / point[2] + camera->centreX;
  point[1] = point[1] * camera->scaleY / point[2] + camera->centreY;
  return Result::Ok;
}

/// Through the table of the camera's device, so that a driver's versions serve.
Result transformAndProject(Camera* camera, float* point) {
  KX_TRY(checkWritable(camera, point));
  KX_TRY(checkWritable(camera->device));
  const DeviceMethods* methods = camera->device->methods;
  KX_TRY(fromCode(methods->cameraTransform(camera, point)));
  return fromCode(methods->cameraProject(camera, point));
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL KX_createCamera(Camera** result, Device3D* device) {
  return kx::toCode(kx::createCamera(result, device));
}

std::uint32_t KX_CALL KX_deleteCamera(Camera* camera) { return kx::toCode(kx::deleteCamera(camera)); }

std::uint32_t KX_CALL KX_cameraSetPosition(Camera* camera, const float* position) {
  return kx::toCode(kx::setPosition(camera, position));
}

std::uint32_t KX_CALL KX_cameraSetRotation(Camera* camera, const float* rotation) {
  return kx::toCode(kx::setRotation(camera, rotation));
}

std::uint32_t KX_CALL KX_cameraSetParameter(Camera* camera, float distance, float viewWidth, float viewHeight,
                                            float screenWidth, float screenHeight) {
  return kx::toCode(kx::setParameter(camera, {distance, viewWidth, viewHeight, screenWidth, screenHeight}));
}

std::uint32_t KX_CALL KX_cameraMove(Camera* camera, const float* offset) {
  return kx::toCode(kx::addTo(camera, &Camera::position, offset));
}

std::uint32_t KX_CALL KX_cameraZoom(Camera* camera, float factor) { return kx::toCode(kx::zoom(camera, factor)); }

// Settled: the matrix is rebuilt by the next KX_cameraSetRotation only.
std::uint32_t KX_CALL KX_cameraRotate(Camera* camera, const float* angles) {
  return kx::toCode(kx::addTo(camera, &Camera::rotation, angles));
}

std::uint32_t KX_CALL KX_cameraTransform(Camera* camera, float* point) {
  return kx::toCode(kx::transform(camera, point));
}

std::uint32_t KX_CALL KX_cameraProject(Camera* camera, float* point) { return kx::toCode(kx::project(camera, point)); }

std::uint32_t KX_CALL KX_cameraTransformAndProject(Camera* camera, float* point) {
  return kx::toCode(kx::transformAndProject(camera, point));
}
