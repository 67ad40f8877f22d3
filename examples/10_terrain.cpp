// 10 Terrain: makes hills, saves them to a file, loads them again and looks over them, column by column from near to
// far. SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <vector>

#include <kxgraphic/kxgraphic.hpp>
#include <kxgraphic/picture.h>

namespace {

constexpr int width = 320, height = 200, mapSize = 256, sea = 96;
constexpr const char* file = "10_terrain.land";

/// Random hills, smoothed and stretched to all heights, in a file.
void save(Device3D* device) {
  kx::Landscape land;
  kx::check(land.create(device, mapSize, mapSize));
  kx::check(LS_createHeightMap(land, 1897, nullptr, 120, 1, 255));
  for (int i = 0; i < 40; ++i) kx::check(LS_softenHeightMap(land, 0, 0, -1, -1));
  kx::check(LS_gradeHeightMap(land, 105, 255, 0, 0, -1, -1));
  kx::Block<std::byte> block;
  kx::check(land.save(block));
  std::ofstream(file, std::ios::binary)
      .write(reinterpret_cast<const char*>(block.data()), static_cast<std::streamsize>(block.size()));
}

kx::Landscape load(Device3D* device) {
  std::ifstream stream(file, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
  kx::Landscape land;
  kx::check(land.load(device, std::as_bytes(std::span(bytes))));
  return land;
}

int heightAt(const kx::Landscape& land, int x, int y) {
  return land.heights(std::clamp(y, 0, mapSize - 1))[static_cast<std::size_t>(std::clamp(x, 0, mapSize - 1))];
}

/// The ground's colour: by height, lighter where it rises away from the sun.
std::array<float, 3> groundAt(const kx::Landscape& land, int x, int y) {
  const int level = heightAt(land, x, y);
  const auto slope = static_cast<float>(heightAt(land, x + 1, y) - heightAt(land, x - 1, y));
  const float light = std::clamp(0.8F + slope * 0.05F, 0.3F, 1.25F);
  const auto grain = static_cast<float>((x * 73 + y * 151 + x * y * 31) % 23) * 0.6F;
  if (level <= sea) {
    const auto depth = static_cast<float>(sea - level);
    return {40 - depth * 0.3F, 105 - depth * 0.8F + grain * 0.4F, 150 - depth * 0.6F + grain * 0.4F};
  }
  std::array<float, 3> colour{212, 194, 140};  // sand
  if (level > sea + 5) colour = {92, 140, 62};
  if (level > 120) colour = {70, 108, 56};
  if (level > 150 || slope * slope > 300) colour = {122, 110, 98};
  if (level > 172) colour = {240, 242, 250};
  for (float& channel : colour) channel = std::min(255.0F, (channel + grain) * light);
  return colour;
}

void draw(const kx::Landscape& land, Bitmap* picture) {
  constexpr std::array<float, 3> haze{214, 206, 214};
  constexpr float eyeX = 150, eyeY = 20, eyeHeight = 225, horizon = 62;
  for (int y = 0; y < height; ++y) {
    const float t = std::min(1.0F, static_cast<float>(y) / horizon);
    kx::check(KX_fillRect(picture, 0, y, width, 1,
                          kx::colour(picture, static_cast<unsigned>(84 + 130 * t), static_cast<unsigned>(140 + 66 * t),
                                     static_cast<unsigned>(215 - t))));
  }
  for (int column = 0; column < width; ++column) {
    int drawn = height;  // what is below is covered already
    for (float distance = 8; distance < 300 && drawn > 0; distance *= 1.006F) {
      const float side = (static_cast<float>(column) / width - 0.5F) * 1.3F;
      const int x = static_cast<int>(eyeX + 512 + side * distance) - 512, y = static_cast<int>(eyeY + distance);
      if (x < 0 || x >= mapSize || y >= mapSize) continue;
      const auto level = static_cast<float>(std::max(sea, heightAt(land, x, y)));
      const int top = std::max(0, static_cast<int>(horizon + (eyeHeight - level) / distance * 90));
      if (top >= drawn) continue;
      const float fog = std::min(1.0F, distance * distance / 62000);
      std::array<unsigned, 3> mixed{};
      const std::array<float, 3> ground = groundAt(land, x, y);
      for (std::size_t i = 0; i < 3; ++i) mixed[i] = static_cast<unsigned>(ground[i] + (haze[i] - ground[i]) * fog);
      kx::check(KX_fillRect(picture, column, top, 1, drawn - top, kx::colour(picture, mixed[0], mixed[1], mixed[2])));
      drawn = top;
    }
  }
}

}  // namespace

int main() {
  kx::Bitmap picture;
  kx::Device device;  // a landscape belongs to the device that would draw it
  kx::check(picture.create(width, height, kx::Format::rgb565));
  kx::check(device.create(picture));
  save(device);
  draw(load(device), picture);
  kx::check(kxSaveBmp(picture, "10_terrain.bmp"));
}
