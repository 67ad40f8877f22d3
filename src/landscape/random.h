// The random numbers of the terrain functions: one linear congruential generator for the whole library, so that the
// terrain of a seed is the same on every platform as long as nothing else draws from it.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace kx {

class LandscapeRandom {
public:
  /// Starts the generator; the same value gives the same numbers.
  void seed(std::uint32_t value);

  /// 0 to 32767.
  std::uint32_t next();

  /// 0.0 to 1.0, both included.
  double nextUnit();

private:
  std::uint32_t seed_ = 0;
};

/// The seed itself, or one from the processor's and the calendar's clock when it is 0.
std::uint32_t effectiveSeed(std::uint32_t seed);

}  // namespace kx
