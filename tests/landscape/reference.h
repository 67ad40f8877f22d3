// Plain forms of the terrain and water rules, one cell at a time, and a landscape that releases itself.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <vector>

#include "frame/heap.h"
#include "kxgraphic/landscape.h"

namespace kxtest {

struct LandscapeDelete {
  void operator()(Landscape* landscape) const {
    LS_deleteLandscape(landscape);
    mmgr_free(landscape);
  }
};
using LandscapeOwner = std::unique_ptr<Landscape, LandscapeDelete>;

/// A landscape with every map set at random.
LandscapeOwner randomLandscape(std::mt19937& random, int width, int height, std::uint32_t colourLight);

/// A height map as plain numbers.
struct Heights {
  int width = 0;
  int height = 0;
  std::vector<int> cells;

  explicit Heights(const Landscape& landscape)
      : width(landscape.width),
        height(landscape.height),
        cells(landscape.heightMap, landscape.heightMap + landscape.width * landscape.height) {}

  int& at(int x, int y) { return cells[static_cast<std::size_t>(y * width + x)]; }
  [[nodiscard]] int at(int x, int y) const { return cells[static_cast<std::size_t>(y * width + x)]; }

  bool operator==(const Heights&) const = default;
};

/// The rectangle rule of the height map functions.
struct Rect {
  int x, y, w, h;
};
Rect cutRect(const Heights& map, Rect rect);

/// Smooths the cells of a rectangle for which `inside` holds, then repeats the rim.
void softenReference(Heights& map, const Rect& rect, const std::function<bool(int x, int y)>& inside);

}  // namespace kxtest
