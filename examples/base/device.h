// A 3D device, a camera and a texture that delete themselves, for the scenes with triangles.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cmath>
#include <memory>

#include "image.h"

namespace demo {

struct DeviceDelete {
  void operator()(Device3D* device) const { KX_delete3DDevice(device); }
};
struct CameraDelete {
  void operator()(Camera* camera) const { KX_deleteCamera(camera); }
};
struct TextureDelete {
  void operator()(Texture* texture) const { KX_deleteTexture(texture); }
};

/// The library's own 3D device method table.
DeviceMethods* deviceMethods();

/// Draws into a frame of its own, which the scene then copies into the target: a device is bound to one bitmap.
class Stage {
public:
  Stage(int width, int height, std::uint32_t format);

  [[nodiscard]] Bitmap* frame() const { return frame_.get(); }
  [[nodiscard]] Device3D* device() const { return device_.get(); }
  [[nodiscard]] Camera* camera() const { return camera_.get(); }

  /// A texture of one level from an image of the stage's format, its width a power of two from 4 to 1024.
  std::unique_ptr<Texture, TextureDelete> texture(const Image& image) const;

  /// Places the camera; angles in radians.
  void look(std::array<float, 3> from, float turn, float nod) const;

  /// A point of the world on the screen; false when it lies behind the camera.
  bool project(std::array<float, 3> point, VertexFloat& vertex) const;

private:
  Image frame_;
  std::unique_ptr<Device3D, DeviceDelete> device_;
  std::unique_ptr<Camera, CameraDelete> camera_;
};

}  // namespace demo
