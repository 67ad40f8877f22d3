// SPDX-License-Identifier: MIT
#include "streams.h"

#include <algorithm>
#include <string>
#include <vector>

#include "random.h"

namespace kxbench {

namespace {

Bytes makeText() {
  constexpr std::int32_t wordCount = 2000;
  constexpr char letters[] = "etaoinshrdlucmfwypvbgkjqxz";
  Random random(0x7E87);
  std::vector<std::string> words(wordCount);
  for (std::string& word : words)
    for (std::int32_t left = 2 + random.below(8); left > 0; --left) {
      const std::int32_t first = random.below(26);
      word += letters[std::min(first, random.below(26))];
    }
  Bytes text;
  for (int count = 1; text.size() < streamBytes; ++count) {
    const std::int32_t some = random.below(wordCount) + 1;
    const std::int32_t fewer = random.below(some) + 1;
    const std::string& word = words[static_cast<std::size_t>(random.below(fewer))];
    text.insert(text.end(), word.begin(), word.end());
    text.push_back(' ');
    if (count % 12 == 0) text.push_back('\n');
  }
  text.resize(streamBytes);
  return text;
}

Bytes makeImage() {
  Bytes image;
  image.reserve(streamBytes);
  Random random(0x1A6E);
  for (std::int32_t y = 0; y < streamSide; ++y)
    for (std::int32_t x = 0; x < streamSide; ++x) {
      const std::int32_t noise = random.below(4);
      const std::int32_t shade = 32 + (((3 * x + y) >> 3) & 31) + (noise == 0 ? 1 : 0);
      image.push_back(static_cast<std::uint8_t>(insideDisc(x, y) ? shade : 0));
    }
  return image;
}

}  // namespace

const Bytes& textStream() {
  static const Bytes text = makeText();
  return text;
}

const Bytes& imageStream() {
  static const Bytes image = makeImage();
  return image;
}

}  // namespace kxbench
