// SPDX-License-Identifier: MIT
#include "device.h"

namespace demo {

DeviceMethods* deviceMethods() {
  static DeviceMethods table = [] {
    DeviceMethods filled;
    KX_get3DDeviceInterface(&filled, nullptr, nullptr, 0);
    return filled;
  }();
  return &table;
}

Stage::Stage(int width, int height, std::uint32_t format) : frame_(makeImage(width, height, format)) {
  Device3D* device = nullptr;
  KX_CHECK(KX_create3DDevice(&device, frame_.get(), 0, 0, 0, deviceMethods()));
  device_.reset(device);
  Camera* camera = nullptr;
  KX_CHECK(KX_createCamera(&camera, device));
  camera_.reset(camera);
  const auto w = static_cast<float>(width);
  const auto h = static_cast<float>(height);
  KX_CHECK(KX_cameraSetParameter(camera, 1.2F, w / h, 1, w, h));
}

std::unique_ptr<Texture, TextureDelete> Stage::texture(const Image& image) const {
  Texture* texture = nullptr;
  KX_CHECK(KX_createTexture(&texture, device_.get(), image->width, image->height, frame_->format, 1));
  std::unique_ptr<Texture, TextureDelete> owner(texture);
  KX_CHECK(KX_bltCopy(texture->levels[0], 0, 0, image.get(), 0, 0, image->width, image->height));
  return owner;
}

void Stage::look(std::array<float, 3> from, float turn, float nod) const {
  const float position[6] = {from[0], from[1], from[2], 0, 0, 0};
  const float rotation[6] = {nod, turn, 0, 0, 0, 0};
  KX_CHECK(KX_cameraSetPosition(camera_.get(), position));
  KX_CHECK(KX_cameraSetRotation(camera_.get(), rotation));
}

bool Stage::project(std::array<float, 3> point, VertexFloat& vertex) const {
  KX_CHECK(KX_cameraTransform(camera_.get(), point.data()));
  constexpr float nearest = 0.05F;
  if (point[2] < nearest) return false;
  KX_CHECK(KX_cameraProject(camera_.get(), point.data()));
  vertex.x = point[0];
  vertex.y = point[1];
  vertex.z = point[2];
  return true;
}

}  // namespace demo
