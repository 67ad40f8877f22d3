// Picture files: what is written reads back; files made here by hand; truncated and garbled ones.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "kxgraphic/picture.h"
#include "support/scratch_folder.h"
#include "support/test_heap.h"
#include "support/test_image.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using kxtest::methods;

struct Release {
  void operator()(Bitmap* bitmap) const { KX_deleteBitmap(bitmap); }
};
using Picture = std::unique_ptr<Bitmap, Release>;

/// The bytes in a block of exactly their size, so that the sanitizer sees each byte read beyond.
std::uint32_t decode(const Bytes& file, Picture& picture) {
  const std::unique_ptr<std::uint8_t[]> exact(new std::uint8_t[file.size()]);
  std::copy(file.begin(), file.end(), exact.get());
  Bitmap* bitmap = nullptr;
  const std::uint32_t code = kxDecodePicture(&bitmap, exact.get(), file.size(), methods());
  picture.reset(bitmap);
  EXPECT_EQ(code == 0, bitmap != nullptr);
  return code;
}

void append(Bytes& bytes, std::uint32_t value, int count) {
  for (; count > 0; --count, value >>= 8) bytes.push_back(static_cast<std::uint8_t>(value));
}

/// A colour for each place, unlike its neighbours.
std::uint32_t indexAt(int x, int y, std::uint32_t colours) {
  return static_cast<std::uint32_t>(x * 5 + y * 3) % colours;
}
std::uint32_t rgbOf(std::uint32_t index) { return index * 0x3A7F15 & 0xFFFFFF; }

constexpr int width = 13;
constexpr int height = 5;

struct BmpKind {
  const char* what;
  std::uint32_t bits, compression, head;
  std::uint32_t masks[3];
  bool topDown;
  std::uint32_t format;  // of the bitmap that is read
};

const BmpKind bmpKinds[] = {
    {"1 bit", 1, 0, 40, {}, false, KX_FORMAT_PALETTE},
    {"4 bits, old header", 4, 0, 12, {}, false, KX_FORMAT_PALETTE},
    {"8 bits, top down", 8, 0, 40, {}, true, KX_FORMAT_PALETTE},
    {"8 bits, long header", 8, 0, 124, {}, false, KX_FORMAT_PALETTE},
    {"8 bits in runs", 8, 1, 40, {}, false, KX_FORMAT_PALETTE},
    {"16 bits", 16, 0, 40, {}, false, KX_FORMAT_555},
    {"16 bits 5-6-5", 16, 3, 40, {0xF800, 0x7E0, 0x1F}, false, KX_FORMAT_565},
    {"16 bits 4-4-4", 16, 3, 40, {0xF, 0xF0, 0xF00}, false, KX_FORMAT_888},
    {"24 bits, old header", 24, 0, 12, {}, false, KX_FORMAT_888},
    {"24 bits", 24, 0, 40, {}, true, KX_FORMAT_888},
    {"32 bits", 32, 0, 40, {}, false, KX_FORMAT_888},
    {"32 bits, red first", 32, 3, 108, {0xFF, 0xFF00, 0xFF0000}, false, KX_FORMAT_888},
};

/// The value that a file stores for 8-bit channels under masks of at most 8 bits each.
std::uint32_t masked(std::uint32_t rgb, const std::uint32_t (&masks)[3]) {
  std::uint32_t value = 0;
  for (int i = 0; i < 3; ++i) {
    const auto bits = static_cast<std::uint32_t>(__builtin_popcount(masks[i]));
    value |= (rgb >> (16 - 8 * i) & 0xFF) >> (8 - bits) << __builtin_ctz(masks[i]);
  }
  return value;
}

Bytes makeBmp(const BmpKind& kind) {
  const std::uint32_t colours = kind.bits <= 8 ? 1u << kind.bits : 0;
  const std::uint32_t entry = kind.head == 12 ? 3 : 4;
  Bytes file{'B', 'M'};
  append(file, 0, 8);
  append(file, 14 + kind.head + (kind.compression == 3 && kind.head == 40 ? 12 : 0) + colours * entry, 4);
  append(file, kind.head, 4);
  if (kind.head == 12) {
    append(file, width | height << 16, 4);
    append(file, 1 | kind.bits << 16, 4);
  } else {
    append(file, width, 4);
    append(file, static_cast<std::uint32_t>(kind.topDown ? -height : height), 4);
    append(file, 1 | kind.bits << 16, 4);
    append(file, kind.compression, 4);
    file.resize(54);
    for (const std::uint32_t mask : kind.masks)
      if (kind.compression == 3) append(file, mask, 4);
    if (kind.head > 40) file.resize(14 + kind.head);
  }
  for (std::uint32_t i = 0; i < colours; ++i) append(file, rgbOf(i), static_cast<int>(entry));

  for (int line = 0; line < height; ++line) {
    const int y = kind.topDown ? line : height - 1 - line;
    const std::size_t start = file.size();
    for (int x = 0; x < width; ++x) {
      const std::uint32_t rgb = rgbOf(indexAt(x, y, 256));
      if (kind.compression == 1) {
        append(file, 1 | indexAt(x, y, 256) << 8, 2);
      } else if (kind.bits < 8) {
        const auto place = static_cast<std::size_t>(x) * kind.bits;
        if (place % 8 == 0) file.push_back(0);
        file.back() = static_cast<std::uint8_t>(file.back() | indexAt(x, y, colours) << (8 - kind.bits - place % 8));
      } else if (kind.bits == 8) {
        file.push_back(static_cast<std::uint8_t>(indexAt(x, y, 256)));
      } else if (kind.compression == 3) {
        append(file, masked(rgb, kind.masks), static_cast<int>(kind.bits / 8));
      } else if (kind.bits == 16) {
        append(file, masked(rgb, {0x7C00, 0x3E0, 0x1F}), 2);
      } else {
        append(file, rgb, static_cast<int>(kind.bits / 8));
      }
    }
    if (kind.compression == 1)
      append(file, 0, 2);
    else
      file.resize(start + (file.size() - start + 3) / 4 * 4);
  }
  if (kind.compression == 1) append(file, 0x100, 2);
  return file;
}

struct PcxKind {
  const char* what;
  std::uint8_t bits, planes;
  std::uint32_t format;
};

const PcxKind pcxKinds[] = {
    {"two colours", 1, 1, KX_FORMAT_PALETTE}, {"16 colours in planes", 1, 4, KX_FORMAT_PALETTE},
    {"4 colours", 2, 1, KX_FORMAT_PALETTE},   {"16 colours", 4, 1, KX_FORMAT_PALETTE},
    {"256 colours", 8, 1, KX_FORMAT_PALETTE}, {"24 bits", 8, 3, KX_FORMAT_888},
};

Bytes makePcx(const PcxKind& kind) {
  const std::uint32_t colours = kind.planes == 3 ? 256 : 1u << kind.bits * kind.planes;
  constexpr std::size_t planeBytes = 14;
  Bytes file{10, 5, 1, kind.bits, 2, 0, 3, 0, 2 + width - 1, 0, 3 + height - 1, 0};
  file.resize(16);
  const auto appendColours = [&](std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i) append(file, __builtin_bswap32(rgbOf(i)) >> 8, 3);
  };
  if (colours <= 16) appendColours(colours);
  file.resize(65);
  append(file, kind.planes | static_cast<std::uint32_t>(planeBytes) << 8, 3);
  file.resize(128);

  Bytes plain;
  for (int y = 0; y < height; ++y)
    for (std::uint32_t plane = 0; plane < kind.planes; ++plane) {
      Bytes row(planeBytes);
      for (int x = 0; x < width; ++x) {
        const std::uint32_t index = indexAt(x, y, colours);
        const std::uint32_t value = kind.planes == 3 ? rgbOf(index) >> (16 - 8 * plane) & 0xFF
                                                     : index >> plane * kind.bits & ((1u << kind.bits) - 1);
        const auto place = static_cast<std::size_t>(x) * kind.bits;
        row[place / 8] = static_cast<std::uint8_t>(row[place / 8] | value << (8 - kind.bits - place % 8));
      }
      plain.insert(plain.end(), row.begin(), row.end());
    }
  // Runs do not stop at the ends of planes and rows.
  for (std::size_t i = 0; i < plain.size();) {
    std::size_t run = 1;
    while (run < 63 && i + run < plain.size() && plain[i + run] == plain[i]) ++run;
    if (run > 1 || plain[i] >= 0xC0) file.push_back(static_cast<std::uint8_t>(0xC0 | run));
    file.push_back(plain[i]);
    i += run;
  }
  if (colours == 256 && kind.planes == 1) {
    file.push_back(12);
    appendColours(256);
  }
  return file;
}

/// The colour of a pixel as the file's author meant it.
std::uint32_t colourAt(Bitmap* bitmap, int x, int y) {
  const std::uint32_t value = KX_getPixel(bitmap, x, y);
  if (bitmap->format != KX_FORMAT_PALETTE) return value;
  const std::uint8_t* entry = bitmap->palette + value * 3;
  return entry[0] | static_cast<std::uint32_t>(entry[1]) << 8 | static_cast<std::uint32_t>(entry[2]) << 16;
}

void expectPicture(const Picture& picture, std::uint32_t format, std::uint32_t colours,
                   const std::function<std::uint32_t(std::uint32_t rgb)>& stored) {
  ASSERT_TRUE(picture);
  ASSERT_EQ(width, picture->width);
  ASSERT_EQ(height, picture->height);
  ASSERT_EQ(format, picture->format);
  EXPECT_EQ(0u, picture->lockCount);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      ASSERT_EQ(stored(rgbOf(indexAt(x, y, colours))), colourAt(picture.get(), x, y)) << x << ", " << y;
}

TEST(Picture, ReadsEveryKindOfBmp) {
  for (const BmpKind& kind : bmpKinds) {
    SCOPED_TRACE(kind.what);
    Picture picture;
    ASSERT_EQ(0u, decode(makeBmp(kind), picture));
    expectPicture(picture, kind.format, kind.bits < 8 ? 1u << kind.bits : 256, [&](std::uint32_t rgb) {
      if (kind.format == KX_FORMAT_555) return masked(rgb, {0x7C00, 0x3E0, 0x1F});
      if (kind.format == KX_FORMAT_565) return masked(rgb, {0xF800, 0x7E0, 0x1F});
      return kind.bits == 16 ? (rgb >> 4 & 0x0F0F0F) * 0x11 : rgb;
    });
  }
}

TEST(Picture, ReadsEveryKindOfPcx) {
  for (const PcxKind& kind : pcxKinds) {
    SCOPED_TRACE(kind.what);
    Picture picture;
    ASSERT_EQ(0u, decode(makePcx(kind), picture));
    expectPicture(picture, kind.format, kind.bits == 8 ? 256 : 1u << kind.bits * kind.planes,
                  [](std::uint32_t rgb) { return rgb; });
  }
}

TEST(Picture, RunsMayStepAndEndEarly) {
  Bytes file = makeBmp(bmpKinds[4]);
  file.resize(54 + 1024);
  // Bottom row: 3 x 7, literals 1 2 3 with their padding; a step by (2, 2); one 9; end; and a run far too long.
  for (const int byte : {3, 7, 0, 3, 1, 2, 3, 0, 0, 2, 2, 2, 1, 9, 0, 0, 255, 4, 0, 1})
    file.push_back(static_cast<std::uint8_t>(byte));
  Picture picture;
  ASSERT_EQ(0u, decode(file, picture));
  const char* const rows[] = {"0000000000000", "4444444444444", "0000000090000", "0000000000000", "7771230000000"};
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      EXPECT_EQ(static_cast<std::uint32_t>(rows[y][x] - '0'), KX_getPixel(picture.get(), x, y)) << x << ", " << y;
}

TEST(Picture, WhatIsWrittenReadsBack) {
  const kxtest::ScratchFolder folder;
  kxtest::Random random(5);
  for (int round = 0; round < 150; ++round) {
    const std::uint32_t formats[] = {0, 3, 4, 5, 6, 7};
    const std::uint32_t format = formats[random() % 6];
    const bool packed = format != 0 && random() % 2 == 0;
    kxtest::TestImage image(random, format, kxtest::between(random, 1, 300), kxtest::between(random, 1, 12), packed);
    image.record()->methods = methods();
    if (format != 4) image.record()->palette = nullptr;
    const std::vector<std::uint32_t> before = image.pixels();
    ASSERT_EQ(0u, kxSaveBmp(image.record(), "round.bmp"));
    Bitmap* read = nullptr;
    ASSERT_EQ(0u, kxLoadPicture(&read, "round.bmp", methods()));
    const Picture picture(read);
    ASSERT_EQ(format, read->format);
    ASSERT_EQ(image.record()->width, read->width);
    ASSERT_EQ(image.record()->height, read->height);
    std::size_t place = 0;
    for (int y = 0; y < read->height; ++y)
      for (int x = 0; x < read->width; ++x, ++place)
        ASSERT_EQ(before[place], KX_getPixel(read, x, y)) << "format " << format << " at " << x << ", " << y;
    if (format == 4) {
      ASSERT_TRUE(std::equal(read->palette, read->palette + 768, image.record()->palette));
    }
  }
}

TEST(Picture, SavingRefusesWhatItCannotWrite) {
  const kxtest::ScratchFolder folder;
  kxtest::Random source(1);
  kxtest::TestImage image(source, KX_FORMAT_PALETTE, 4, 4, true);
  Bitmap broken = *image.record();
  broken.methods = methods();
  EXPECT_EQ(0x7u, kxSaveBmp(nullptr, "x.bmp"));
  EXPECT_EQ(0x7u, kxSaveBmp(&broken, nullptr));
  EXPECT_EQ(0x1004u, kxSaveBmp(&broken, "no/such/folder.bmp"));
  broken.palette = nullptr;
  EXPECT_EQ(0x2002u, kxSaveBmp(&broken, "x.bmp"));
  broken.rowTable = nullptr;
  EXPECT_EQ(0x2001u, kxSaveBmp(&broken, "x.bmp"));
  broken.format = 9;
  EXPECT_EQ(0x2000u, kxSaveBmp(&broken, "x.bmp"));
  EXPECT_EQ("", kxtest::readFile("x.bmp"));
  Bitmap* result = nullptr;
  EXPECT_EQ(0x1000u, kxLoadPicture(&result, "missing.bmp", methods()));
  EXPECT_EQ(0x1005u, kxDecodePicture(&result, "GIF89a", 6, methods()));
  EXPECT_EQ(0x7u, kxDecodePicture(&result, "BM", 2, nullptr));
  EXPECT_EQ(nullptr, result);
}

/// Samples of all kinds, for spoiling.
std::vector<Bytes> samples() {
  std::vector<Bytes> files;
  for (const BmpKind& kind : bmpKinds) files.push_back(makeBmp(kind));
  for (const PcxKind& kind : pcxKinds) files.push_back(makePcx(kind));
  return files;
}

TEST(Picture, HeadersThatLieAreRefused) {
  struct Lie {
    std::size_t offset;
    std::uint32_t value;
    int bytes;
    std::uint32_t code;
  };
  const Lie bmpLies[] = {{10, 0xFFFFFFF0, 4, 0x1002},
                         {14, 39, 4, 0x1005},
                         {14, 0xFFFFFFFF, 4, 0x1005},
                         {18, 0, 4, 0x1005},
                         {18, 0x80000000, 4, 0x1005},
                         {18, 32767, 4, 0x1002},
                         {22, 0x80000000, 4, 0x1005},
                         {22, 32767, 4, 0x1002},
                         {28, 2, 2, 0x2000},
                         {28, 0, 2, 0x2000},
                         {30, 2, 4, 0x8},
                         {30, 4, 4, 0x8}};
  const Lie pcxLies[] = {{2, 2, 1, 0x1005},  {3, 3, 1, 0x2000},      {65, 0, 1, 0x2000},     {65, 5, 1, 0x2000},
                         {66, 1, 2, 0x1005}, {8, 0xFFFF, 2, 0x1005}, {8, 1, 2, 0x1005},      {10, 0x7FF0, 2, 0x1002},
                         {0, 11, 1, 0x1005}, {1, 6, 1, 0x1005},      {66, 0xFFFF, 2, 0x1002}};
  const auto expectRefused = [](const Bytes& good, const Lie& lie) {
    Bytes file = good;
    for (int i = 0; i < lie.bytes; ++i)
      file[lie.offset + static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(lie.value >> 8 * i);
    Picture picture;
    EXPECT_EQ(lie.code, decode(file, picture)) << lie.offset << " = " << lie.value;
  };
  for (const Lie& lie : bmpLies) expectRefused(makeBmp(bmpKinds[9]), lie);
  for (const Lie& lie : pcxLies) expectRefused(makePcx(pcxKinds[1]), lie);
}

TEST(Picture, TruncatedFilesAreRefused) {
  const std::size_t blocks = kxtest::liveBlocks();
  for (const Bytes& good : samples()) {
    Picture picture;
    ASSERT_EQ(0u, decode(good, picture));
    for (std::size_t length = 0; length + 3 < good.size(); ++length) {
      Bytes file(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length));
      EXPECT_NE(0u, decode(file, picture)) << length << " of " << good.size();
    }
  }
  EXPECT_EQ(blocks, kxtest::liveBlocks());
}

TEST(Picture, GarbledFilesDoNoHarm) {
  const std::size_t blocks = kxtest::liveBlocks();
  kxtest::Random random(77);
  int read = 0;
  for (const Bytes& good : samples())
    for (int round = 0; round < 400; ++round) {
      Bytes file = good;
      // Mostly headers, where a byte means much.
      for (std::uint32_t i = random() % 4 + 1; i > 0; --i)
        file[random() % (random() % 2 == 0 ? 80 : file.size())] = static_cast<std::uint8_t>(random());
      if (random() % 4 == 0) file.resize(random() % file.size());
      Picture picture;
      if (decode(file, picture) == 0) ++read;
    }
  EXPECT_GT(read, 500) << "nearly all files are refused: the test proves little";
  EXPECT_EQ(blocks, kxtest::liveBlocks());
}

TEST(Picture, AFailedAllocationIsACode) {
  for (const Bytes& file : {makeBmp(bmpKinds[4]), makePcx(pcxKinds[4])})
    for (unsigned k = 1;; ++k) {
      const std::size_t mark = kxtest::allocationMark();
      Picture picture;
      kxtest::failAllocation(k);
      const std::uint32_t code = decode(file, picture);
      const bool failed = kxtest::allocationFailed();
      kxtest::failAllocation(0);
      if (!failed) {
        EXPECT_EQ(0u, code);
        break;
      }
      EXPECT_EQ(2u, code);
      EXPECT_EQ(nullptr, picture);
      kxtest::freeBlocksSince(mark);
    }
}

}  // namespace
