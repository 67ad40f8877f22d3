// SPDX-License-Identifier: MIT
#include "draw/model.h"

#include "bitmap/own_methods.h"
#include "bitmap/packed.h"

namespace kxtest {

namespace {

struct Field {
  int shift, bits;
};

std::vector<Field> fieldsOf(std::uint32_t format) {
  switch (format & 15) {
    case 0:
      return {{0, 1}};
    case 5:
      return {{0, 5}, {5, 5}, {10, 5}};
    case 6:
      return {{0, 5}, {5, 6}, {11, 5}};
    case 7:
      return {{0, 8}, {8, 8}, {16, 8}};
    default:
      return {{0, 8}};
  }
}

}  // namespace

std::uint32_t valueMask(std::uint32_t format) {
  switch (format & 15) {
    case 0:
      return 1;
    case 5:
    case 6:
      return 0xFFFF;
    case 7:
      return 0xFFFFFF;
    default:
      return 0xFF;
  }
}

std::vector<int> channelsOf(std::uint32_t format, std::uint32_t value) {
  std::vector<int> channels;
  for (const Field& field : fieldsOf(format)) {
    const int c = static_cast<int>(value >> field.shift) & ((1 << field.bits) - 1);
    const int free = 8 - field.bits;
    channels.push_back(field.bits == 1 ? 255 * c : (c << free) + (1 << free) - 1);
  }
  return channels;
}

void Model::fillWithNoise(Random& random, std::uint32_t kinds) {
  std::vector<std::uint32_t> choice(kinds);
  for (auto& value : choice) value = random.next() & valueMask(format);
  for (auto& value : values) value = kinds != 0 ? choice[random.below(kinds)] : random.next() & valueMask(format);
}

void plot(Model& target, std::int32_t x, std::int32_t y, const Ink& ink) {
  if (ink.depths != nullptr) {
    std::uint32_t& depth = ink.depths->at(x, y);
    if (ink.z > static_cast<int>(depth)) return;
    depth = static_cast<std::uint32_t>(ink.z);
  }
  std::uint32_t& pixel = target.at(x, y);
  if (ink.alpha < 0) {
    pixel = ink.colour & valueMask(target.format);
    return;
  }
  std::uint32_t blended = 0;
  for (const Field& field : fieldsOf(target.format)) {
    const auto channel = [&](std::uint32_t value) {
      return static_cast<int>(value >> field.shift) & ((1 << field.bits) - 1);
    };
    const int mixed = ((255 - ink.alpha) * channel(ink.colour) + ink.alpha * channel(pixel)) / 255;
    blended |= static_cast<std::uint32_t>(mixed) << field.shift;
  }
  pixel = blended;
}

Image::Image(Model& model, BitmapMethods* methods) {
  if (methods == nullptr) methods = kx::ownBitmapMethods();
  const auto make = [&](std::uint32_t format) {
    Bitmap* bitmap = nullptr;
    EXPECT_EQ(0u, KX_createBitmap(&bitmap, model.width, model.height, format, 0, 0, methods));
    return bitmap;
  };
  Bitmap* plain = make(model.format & 15);
  for (std::int32_t y = 0; y < model.height; ++y)
    for (std::int32_t x = 0; x < model.width; ++x) KX_setPixel(plain, x, y, model.at(x, y));
  bitmap_ = plain;
  if ((model.format & 0x30) == 0) return;
  bitmap_ = make(model.format);
  EXPECT_EQ(kx::Result::Ok, kx::pack(bitmap_, plain));
}

Image::~Image() { KX_deleteBitmap(bitmap_); }

std::vector<std::uint32_t> Image::values() const {
  Bitmap* plain = bitmap_;
  if ((bitmap_->format & 0x30) != 0) {
    EXPECT_EQ(kx::Result::Ok, kx::unpack(&plain, bitmap_));
  }
  std::vector<std::uint32_t> values;
  for (std::int32_t y = 0; y < plain->height; ++y)
    for (std::int32_t x = 0; x < plain->width; ++x) values.push_back(KX_getPixel(plain, x, y));
  if (plain != bitmap_) kx::discardUnpacked(plain);
  return values;
}

}  // namespace kxtest
