// Generated height maps, kept in landscapes: for islands and lagoons.
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <kxgraphic/mmgr.h>

#include "image.h"

namespace demo {

/// LS_deleteLandscape releases the maps only; the record's own block is its owner's.
struct LandscapeDelete {
  void operator()(Landscape* landscape) const {
    LS_deleteLandscape(landscape);
    mmgr_free(landscape);
  }
};
using Terrain = std::unique_ptr<Landscape, LandscapeDelete>;

/// A landscape of size x size cells with all heights 0.
Terrain makeTerrain(Device3D* device, int size);

/// A fractal of the seed, smoothed.
void makeHills(const Terrain& terrain, std::uint32_t seed);

/// Lets the heights fall to the sea towards the rim.
void sinkRim(const Terrain& terrain);

/// Height of a cell, 0 to 255; cells beyond the rim are sea.
int heightAt(const Terrain& terrain, int x, int y);

/// Light on a cell from the upper left, 0.0 to 1.0.
double lightAt(const Terrain& terrain, int x, int y);

/// What covers a cell of a height.
enum class Ground { Sea, Sand, Grass, Rock, Snow };
Ground groundAt(int height);
Rgb groundColour(Ground ground);

constexpr int seaLevel = 60;

}  // namespace demo
