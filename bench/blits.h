// The blit workloads (groups a to g, and n: sizes) as data. A contender is a function that prepares one of them.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "pictures.h"
#include "scenes.h"
#include "works.h"

namespace kxbench {

enum class Blend { None, Constant, Map };
enum class Depth { None, Buffer, Map };

/// One call: a rectangle of the source to one of the target.
struct Move {
  Rectangle to, from;
};

struct BlitWork {
  std::string name;
  std::uint32_t target, source;  ///< format codes
  bool keyed = false;            ///< pixels of value 0 are skipped
  Blend blend = Blend::None;
  std::int32_t alpha = 0;          ///< Blend::Constant: weight of the target, 0 to 255
  AlphaKind map = AlphaKind::Mix;  ///< Blend::Map
  Depth depth = Depth::None;
  std::int32_t width = frameWidth, height = frameHeight;  ///< of the source
  std::int32_t targetWidth = frameWidth, targetHeight = frameHeight;
  bool packed = false;  ///< the library's source is in packed rows
  std::vector<Move> moves = {};

  /// All moves of a workload have the same sizes.
  [[nodiscard]] bool stretches() const { return moves[0].to.width != moves[0].from.width; }
  /// Colour ramps, with `key` outside the discs where the workload is keyed.
  [[nodiscard]] Picture makeSource(std::uint32_t key = 0) const {
    return keyed ? makeKeyedPicture(source, 1, width, height, key) : makePicture(source, 1, width, height, key);
  }
  /// Pixels written by all moves.
  [[nodiscard]] std::int64_t pixels() const;
  [[nodiscard]] Picture makeTarget() const { return makePicture(target, 2, targetWidth, targetHeight); }
};

const std::vector<BlitWork>& blitWorks();

}  // namespace kxbench
