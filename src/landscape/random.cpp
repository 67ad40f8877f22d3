// SPDX-License-Identifier: MIT
#include "landscape/random.h"

#include <ctime>

namespace kx {

namespace {
std::uint32_t state = 1;
}

void LandscapeRandom::seed(std::uint32_t value) {
  seed_ = value;
  state = seed_;
}

std::uint32_t LandscapeRandom::next() {
  state = state * 1103515245U + 12345U;
  return (state >> 16) & 32767U;
}

double LandscapeRandom::nextUnit() { return next() * (1 / 32767.0); }

std::uint32_t effectiveSeed(std::uint32_t seed) {
  return seed != 0 ? seed : static_cast<std::uint32_t>(std::clock()) + static_cast<std::uint32_t>(std::time(nullptr));
}

}  // namespace kx
