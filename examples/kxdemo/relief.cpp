// Height maps: from the fractal to an island, as shaded reliefs.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <string>
#include <vector>

#include "device.h"
#include "panels.h"
#include "terrain.h"

namespace demo {

namespace {

constexpr int mapSize = 129;

/// The relief seen from above, in colour or in grey.
Image relief(const Terrain& terrain, bool coloured) {
  Image image = makeImage(terrain->width, terrain->height, KX_FORMAT_888);
  for (int y = 0; y < terrain->height; ++y)
    for (int x = 0; x < terrain->width; ++x) {
      const int height = heightAt(terrain, x, y);
      Rgb ground{static_cast<unsigned>(height), static_cast<unsigned>(height), static_cast<unsigned>(height)};
      double light = 1;
      if (coloured) {
        ground = groundColour(groundAt(height));
        light = height <= seaLevel ? 0.45 + height * 0.008 : lightAt(terrain, x, y) * 1.25;
      }
      const auto channel = [&](unsigned value) { return static_cast<unsigned>(std::min(255.0, value * light)); };
      KX_CHECK(KX_setPixel(image.get(), x, y,
                           KX_toRGB(KX_FORMAT_888, channel(ground.red), channel(ground.green), channel(ground.blue))));
    }
  return image;
}

/// All six steps are drawn once; height maps do not move.
class Relief final : public PanelScene {
public:
  explicit Relief(const Material& material) : PanelScene(material), stage_(64, 64, material.format) {
    const Terrain terrain = makeTerrain(stage_.device(), mapSize);
    Landscape* land = terrain.get();

    KX_CHECK(LS_createHeightMap(land, 1998, nullptr, 70, 1, 255));
    add("Midpoint subdivision from seed 1998", "LS_createHeightMap", terrain, false);

    for (int i = 0; i < 9; ++i) KX_CHECK(LS_softenHeightMap(land, 0, 0, -1, -1));
    add("Smoothed nine times", "LS_softenHeightMap", terrain, false);

    KX_CHECK(LS_gradeHeightMap(land, 128, 255, 0, 0, -1, -1));
    add("Stretched over the full range", "LS_gradeHeightMap", terrain, false);

    sinkRim(terrain);
    add("The rim sunk by the program, coloured", "Landscape.heightMap", terrain, true);

    for (int i = 0; i < 24; ++i) KX_CHECK(LS_softenHeightMapRound(land, 7, 48, 60, 15, 23, 6));
    KX_CHECK(LS_gradeHeightMapRound(land, 5, 85, 70, 12, 20, 6, 150));
    add("One round area smoothed, one rugged", "LS_soften..., LS_gradeHeightMapRound", terrain, true);

    std::uint32_t average = 0;
    std::uint32_t lowest = 0;
    std::uint32_t highest = 0;
    KX_CHECK(LS_findHillValley(land, &hillX_, &hillY_, 1, 0, 0, -1, -1));
    KX_CHECK(LS_getAverageHeight(land, &average, &lowest, &highest, 0, 0, -1, -1));
    void* block = nullptr;
    std::uint32_t size = 0;
    KX_CHECK(LS_convertToData(land, &block, &size, nullptr, 0));
    mmgr_free(block);
    add("Top " + std::to_string(highest) + ", mean " + std::to_string(average) + ", " + std::to_string(size) +
            " bytes saved",
        "LS_findHillValley, LS_convertToData", terrain, true);
  }

  void draw(Bitmap* target, const Frame& frame) override {
    begin(target);
    for (const Step& step : steps_)
      show(step.caption, step.call, [&](Bitmap* field) {
        KX_CHECK(KX_bltStretch(field, 0, 0, width, height, step.image.get(), 0, 0, mapSize, mapSize));
        if (&step != &steps_.back()) return;
        const int x = std::clamp(static_cast<int>(hillX_) * width / mapSize, 6, width - 7);
        const int y = std::clamp(static_cast<int>(hillY_) * height / mapSize, 6, height - 7);
        const int reach = 3 + static_cast<int>(frame.seconds * 6) % 4;
        KX_CHECK(KX_drawLine(field, x - reach, y, x + reach, y, colour(235, 50, 40)));
        KX_CHECK(KX_drawLine(field, x, y - reach, x, y + reach, colour(235, 50, 40)));
      });
  }

private:
  struct Step {
    std::string caption;
    const char* call;
    Image image;
  };

  void add(std::string caption, const char* call, const Terrain& terrain, bool coloured) {
    steps_.push_back({std::move(caption), call, relief(terrain, coloured)});
  }

  Stage stage_;
  std::vector<Step> steps_;
  std::uint32_t hillX_ = 0;
  std::uint32_t hillY_ = 0;
};

}  // namespace

std::unique_ptr<Scene> makeRelief(const Material& material) { return std::make_unique<Relief>(material); }

}  // namespace demo
