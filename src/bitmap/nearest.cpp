// The nearest-entry search: its meaning in plain code, and the choice of the functions in force.
// SPDX-License-Identifier: MIT
#include "bitmap/nearest.h"

#include <cstdlib>

#include "kxgraphic/bitmap.h"
#include "pixel/cpu.h"

namespace kx {

namespace {

void splitPlain(PalettePlanes* planes, const std::uint8_t* palette) {
  for (std::size_t i = 0; i < 256; ++i) {
    planes->b[i] = palette[3 * i];
    planes->g[i] = palette[3 * i + 1];
    planes->r[i] = palette[3 * i + 2];
  }
}

std::uint32_t findPlain(const PalettePlanes* planes, std::uint8_t b, std::uint8_t g, std::uint8_t r) {
  std::uint32_t nearest = 0;
  int least = 3 * 255;
  for (std::uint32_t i = 0; i < 256; ++i) {
    const int distance = std::abs(b - planes->b[i]) + std::abs(g - planes->g[i]) + std::abs(r - planes->r[i]);
    if (distance <= least) {
      least = distance;
      nearest = i;
    }
  }
  return nearest;
}

NearestKernels chooseKernels(CpuLevel level) {
  if (level >= CpuLevel::Avx2) return nearestKernelsAvx2();
  if (level >= CpuLevel::Sse2) return nearestKernelsSse2();
  return {splitPlain, findPlain};
}

KernelTable<NearestKernels> kernels(chooseKernels);

}  // namespace

PalettePlanes splitPalette(const std::uint8_t* palette) {
  PalettePlanes planes;
  kernels->split(&planes, palette);
  return planes;
}

std::uint32_t nearestEntry(const PalettePlanes& planes, Rgb colour) {
  return kernels->find(&planes, colour.b, colour.g, colour.r);
}

}  // namespace kx

std::uint32_t KX_CALL KX_findNearestColor(std::uint32_t format, std::uint32_t value, const std::uint8_t* palette) {
  return kx::nearestEntry(kx::splitPalette(palette), kx::toChannels(format, value));
}
