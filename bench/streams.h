// What the coders work on: a mebibyte of text and one of an image.
// SPDX-License-Identifier: MIT
#pragma once

#include "pictures.h"

namespace kxbench {

constexpr std::int32_t streamSide = 1024;  ///< the image is as wide as it is high
constexpr std::size_t streamBytes = std::size_t{streamSide} * streamSide;

/// Invented words, frequent ones more often, twelve to a line.
const Bytes& textStream();

/// Discs of ramps with noise on an empty ground.
const Bytes& imageStream();

}  // namespace kxbench
