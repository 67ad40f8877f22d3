// SPDX-License-Identifier: MIT
#include "animation.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>

// stb_image_write has this function, but no declaration of it.
extern "C" unsigned char* stbi_zlib_compress(unsigned char* data, int length, int* compressedLength, int quality);

namespace demo {

namespace {

/// The last palette entry stands for "as in the frame before".
constexpr int colourCount = 255;
constexpr std::uint8_t unchanged = 255;

using Bytes = std::vector<std::uint8_t>;

void put32(Bytes& bytes, std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}

void put16(Bytes& bytes, int value) {
  bytes.push_back(static_cast<std::uint8_t>(value >> 8));
  bytes.push_back(static_cast<std::uint8_t>(value));
}

/// A chunk: its length, type, content, and the checksum of the two.
void putChunk(Bytes& file, const char* type, const Bytes& content) {
  put32(file, static_cast<std::uint32_t>(content.size()));
  const std::size_t begin = file.size();
  file.insert(file.end(), type, type + 4);
  file.insert(file.end(), content.begin(), content.end());
  put32(file, KX_calculateCRC(file.data() + begin, static_cast<std::int32_t>(file.size() - begin)));
}

int distance(int a, int b) { return (a - b) * (a - b); }

}  // namespace

Animation::Animation(int width, int height, int factor, int milliseconds)
    : width_(width / factor),
      height_(height / factor),
      factor_(factor),
      milliseconds_(milliseconds),
      nearest_(1 << 15, -1) {}

std::vector<Animation::Rgb8> Animation::shrunk(const Image& image) const {
  const std::vector<std::uint8_t> rgb = rgbOf(image);
  std::vector<Rgb8> small;
  small.reserve(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_));
  for (int y = 0; y < height_; ++y)
    for (int x = 0; x < width_; ++x) {
      std::array<int, 3> sum{};
      for (int row = 0; row < factor_; ++row)
        for (int i = 0; i < factor_ * 3; ++i)
          sum[static_cast<std::size_t>(i % 3)] +=
              rgb[static_cast<std::size_t>(((y * factor_ + row) * image->width + x * factor_) * 3 + i)];
      const auto mean = [&](std::size_t channel) {
        return static_cast<std::uint8_t>(sum[channel] / (factor_ * factor_));
      };
      small.push_back({mean(0), mean(1), mean(2)});
    }
  return small;
}

void Animation::sample(const Image& image) {
  const std::vector<Rgb8> small = shrunk(image);
  for (std::size_t i = 0; i < small.size(); i += 7) samples_.push_back(small[i]);
}

/// Median cut: the box whose channels reach furthest is halved until there is one for each colour.
void Animation::choosePalette() {
  struct Box {
    std::size_t begin, end;
    int reach;
    std::uint8_t Rgb8::*channel;
  };
  const auto measured = [&](std::size_t begin, std::size_t end) {
    Box box{begin, end, -1, &Rgb8::red};
    for (std::uint8_t Rgb8::*channel : {&Rgb8::red, &Rgb8::green, &Rgb8::blue}) {
      const auto [low, high] = std::minmax_element(
          samples_.begin() + static_cast<std::ptrdiff_t>(begin), samples_.begin() + static_cast<std::ptrdiff_t>(end),
          [&](const Rgb8& a, const Rgb8& b) { return a.*channel < b.*channel; });
      const int reach = (*high).*channel - (*low).*channel;
      if (reach > box.reach) {
        box.reach = reach;
        box.channel = channel;
      }
    }
    return box;
  };
  std::vector<Box> boxes{measured(0, samples_.size())};
  while (boxes.size() < colourCount) {
    const auto widest =
        std::max_element(boxes.begin(), boxes.end(), [](const Box& a, const Box& b) { return a.reach < b.reach; });
    if (widest->reach <= 0) break;
    const Box box = *widest;
    const std::size_t middle = (box.begin + box.end) / 2;
    const auto at = [&](std::size_t index) { return samples_.begin() + static_cast<std::ptrdiff_t>(index); };
    std::nth_element(at(box.begin), at(middle), at(box.end),
                     [&](const Rgb8& a, const Rgb8& b) { return a.*(box.channel) < b.*(box.channel); });
    *widest = measured(box.begin, middle);
    boxes.push_back(measured(middle, box.end));
  }
  for (const Box& box : boxes) {
    std::array<std::size_t, 3> sum{};
    for (std::size_t i = box.begin; i < box.end; ++i) {
      sum[0] += samples_[i].red;
      sum[1] += samples_[i].green;
      sum[2] += samples_[i].blue;
    }
    const auto mean = [&](std::size_t channel) {
      return static_cast<std::uint8_t>(sum[channel] / (box.end - box.begin));
    };
    palette_.push_back({mean(0), mean(1), mean(2)});
  }
}

std::uint8_t Animation::indexOf(Rgb8 colour) {
  std::int16_t& known =
      nearest_[static_cast<std::size_t>(colour.red >> 3 << 10 | colour.green >> 3 << 5 | colour.blue >> 3)];
  if (known < 0) {
    int best = std::numeric_limits<int>::max();
    for (std::size_t i = 0; i < palette_.size(); ++i) {
      const Rgb8& entry = palette_[i];
      const int away = 3 * distance(entry.red, colour.red) + 4 * distance(entry.green, colour.green) +
                       2 * distance(entry.blue, colour.blue);
      if (away < best) {
        best = away;
        known = static_cast<std::int16_t>(i);
      }
    }
  }
  return static_cast<std::uint8_t>(known);
}

void Animation::add(const Image& image) {
  if (palette_.empty()) choosePalette();
  const std::vector<Rgb8> colours = shrunk(image);
  std::vector<std::uint8_t> indices(colours.size());
  std::transform(colours.begin(), colours.end(), indices.begin(), [&](Rgb8 colour) { return indexOf(colour); });
  // Every row begins with the number of its filter: none.
  Bytes rows;
  rows.reserve(indices.size() + static_cast<std::size_t>(height_));
  for (std::size_t i = 0; i < indices.size(); ++i) {
    if (i % static_cast<std::size_t>(width_) == 0) rows.push_back(0);
    rows.push_back(!last_.empty() && last_[i] == indices[i] ? unchanged : indices[i]);
  }
  last_ = std::move(indices);
  int length = 0;
  const std::unique_ptr<unsigned char, void (*)(void*)> compressed(
      stbi_zlib_compress(rows.data(), static_cast<int>(rows.size()), &length, 16), std::free);
  if (!compressed) throw Error(1, "no memory for a frame");
  frames_.emplace_back(compressed.get(), compressed.get() + length);
}

void Animation::save(const std::string& file) const {
  Bytes out{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  Bytes content;
  const auto chunk = [&](const char* type) {
    putChunk(out, type, content);
    content.clear();
  };
  put32(content, static_cast<std::uint32_t>(width_));
  put32(content, static_cast<std::uint32_t>(height_));
  content.insert(content.end(), {8, 3, 0, 0, 0});  // 8 bits, indexed, the only methods there are
  chunk("IHDR");
  put32(content, static_cast<std::uint32_t>(frames_.size()));
  put32(content, 0);  // played for ever
  chunk("acTL");
  for (std::size_t i = 0; i <= unchanged; ++i) {
    const Rgb8 entry = i < palette_.size() ? palette_[i] : Rgb8{};
    content.insert(content.end(), {entry.red, entry.green, entry.blue});
  }
  chunk("PLTE");
  content.assign(256, 255);
  content[unchanged] = 0;
  chunk("tRNS");
  std::uint32_t sequence = 0;
  for (std::size_t i = 0; i < frames_.size(); ++i) {
    put32(content, sequence++);
    put32(content, static_cast<std::uint32_t>(width_));
    put32(content, static_cast<std::uint32_t>(height_));
    put32(content, 0);
    put32(content, 0);
    put16(content, milliseconds_);
    put16(content, 1000);
    content.insert(content.end(), {0, static_cast<std::uint8_t>(i == 0 ? 0 : 1)});  // left standing; drawn over
    chunk("fcTL");
    if (i > 0) put32(content, sequence++);
    content.insert(content.end(), frames_[i].begin(), frames_[i].end());
    chunk(i == 0 ? "IDAT" : "fdAT");
  }
  chunk("IEND");
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> opened(std::fopen(file.c_str(), "wb"), std::fclose);
  if (!opened || std::fwrite(out.data(), 1, out.size(), opened.get()) != out.size())
    throw Error(exitNotWritten, file + ": cannot be written");
}

}  // namespace demo
