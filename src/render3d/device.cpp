// 3D devices: making them on a bitmap or a screen, clearing, the clip rectangle.
// SPDX-License-Identifier: MIT
#include "render3d/device.h"

#include "bitmap/locks.h"
#include "frame/heap.h"
#include "kxgraphic/kxgraphic.h"
#include "pixel/formats.h"

namespace kx {

namespace {

/// An 8-bit bitmap with the creation flags that mark a Z buffer to drivers.
constexpr std::uint32_t zBufferFormat = 0x883;

/// Farthest depth, to which a clear sets the Z buffer.
constexpr std::uint32_t farthestDepth = 0xFF;

/// What a caller asks of a new device.
struct DeviceRequest {
  Bitmap* target;  ///< null for a device on a screen
  Screen* screen;  ///< null for a device on a bitmap
  std::uint32_t parameter1, parameter2;
  bool zBuffer;
  DeviceMethods* methods;
};

Result createDevice(Device3D** result, const DeviceRequest& request) {
  const void* drawnOn = request.screen != nullptr ? static_cast<const void*>(request.screen) : request.target;
  if (isBadWritePointer(result) || isBadReadPointer(drawnOn) || isBadReadPointer(request.methods))
    return Result::IllegalParameter;
  if (request.methods->version != currentVersion) return Result::UnsupportedMethodsVersion;
  Bitmap* target = request.target;
  if (request.screen != nullptr) KX_TRY(backBuffer(&target, request.screen));
  const std::uint32_t format = formatCode(target->format);
  if (format != KX_FORMAT_555 && format != KX_FORMAT_565) return Result::ColorFormatNotSupported;
  if (hasPackedRows(target->format)) return Result::PackerTypeNotSupported;

  HeapRecord<Device3D> made = makeRecord<Device3D>();
  if (made == nullptr) return Result::OutOfMemory;
  // Settled: the record is not released when its Z buffer cannot be made.
  Device3D* device = made.release();
  device->methods = request.methods;
  device->version = currentVersion;
  device->clipRight = target->width - 1;
  device->clipBottom = target->height - 1;
  device->target = request.target;
  device->screen = request.screen;
  device->parameter1 = request.parameter1;
  device->parameter2 = request.parameter2;
  if (request.zBuffer)
    KX_TRY(createThroughTable(&device->zBuffer, *target, target->width, target->height, zBufferFormat));
  *result = device;
  return Result::Ok;
}

Result deleteDevice(Device3D* device) {
  KX_TRY(checkWritable(device));
  if (device->zBuffer != nullptr) KX_TRY(deleteThroughTable(device->zBuffer));
  mmgr_free(device);
  return Result::Ok;
}

Result fillWhole(Bitmap* bitmap, std::uint32_t colour) {
  KX_TRY(checkTable(*bitmap));
  return fromCode(bitmap->methods->fillRect(bitmap, 0, 0, bitmap->width, bitmap->height, colour));
}

Result clearDevice(Device3D* device, std::uint32_t colour) {
  KX_TRY(checkWritable(device));
  Bitmap* target = nullptr;
  KX_TRY(renderTarget(&target, device));
  KX_TRY(fillWhole(target, colour));
  if (device->zBuffer != nullptr) KX_TRY(fillWhole(device->zBuffer, farthestDepth));
  // Settled: the floating-point modes that KX_beginRendering saved are not restored.
  device->renderingDepth = 0;
  return Result::Ok;
}

Result setClipRect(Device3D* device, std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom) {
  KX_TRY(checkWritable(device));
  Bitmap* target = nullptr;
  KX_TRY(renderTarget(&target, device));
  if (left < 0 || top < 0 || right < left || bottom < top || right >= target->width || bottom >= target->height)
    return Result::CoordinateOutOfRange;
  device->clipLeft = left;
  device->clipTop = top;
  device->clipRight = right;
  device->clipBottom = bottom;
  return Result::Ok;
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL KX_create3DDevice(Device3D** result, Bitmap* target, std::uint32_t parameter1,
                                        std::uint32_t parameter2, std::uint8_t zBuffer, DeviceMethods* methods) {
  return kx::toCode(kx::createDevice(result, {.target = target,
                                              .screen = nullptr,
                                              .parameter1 = parameter1,
                                              .parameter2 = parameter2,
                                              .zBuffer = zBuffer != 0,
                                              .methods = methods}));
}

std::uint32_t KX_CALL KX_create3DDevice_Screen(Device3D** result, Screen* screen, std::uint32_t parameter1,
                                               std::uint32_t parameter2, std::uint8_t zBuffer, DeviceMethods* methods) {
  return kx::toCode(kx::createDevice(result, {.target = nullptr,
                                              .screen = screen,
                                              .parameter1 = parameter1,
                                              .parameter2 = parameter2,
                                              .zBuffer = zBuffer != 0,
                                              .methods = methods}));
}

std::uint32_t KX_CALL KX_delete3DDevice(Device3D* device) { return kx::toCode(kx::deleteDevice(device)); }

std::uint32_t KX_CALL KX_clear3DDevice(Device3D* device, std::uint32_t colour) {
  return kx::toCode(kx::clearDevice(device, colour));
}

std::uint32_t KX_CALL KX_setClipRect(Device3D* device, std::int32_t left, std::int32_t top, std::int32_t right,
                                     std::int32_t bottom) {
  return kx::toCode(kx::setClipRect(device, left, top, right, bottom));
}
