// LZW with 12 bits and PackBits, as one strip of a TIFF file in memory.
// SPDX-License-Identifier: MIT
#include <tiffio.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "../codec.h"

namespace {

using kxbench::Bytes;
using kxbench::streamSide;

struct File {
  Bytes& bytes;
  std::size_t at = 0;
};

File& fileOf(thandle_t handle) { return *static_cast<File*>(handle); }

tmsize_t read(thandle_t handle, void* data, tmsize_t size) {
  File& file = fileOf(handle);
  const std::size_t bytes = std::min(static_cast<std::size_t>(size), file.bytes.size() - file.at);
  std::memcpy(data, file.bytes.data() + file.at, bytes);
  file.at += bytes;
  return static_cast<tmsize_t>(bytes);
}

tmsize_t write(thandle_t handle, void* data, tmsize_t size) {
  File& file = fileOf(handle);
  const auto bytes = static_cast<std::size_t>(size);
  file.bytes.resize(std::max(file.bytes.size(), file.at + bytes));
  std::memcpy(file.bytes.data() + file.at, data, bytes);
  file.at += bytes;
  return size;
}

toff_t seek(thandle_t handle, toff_t offset, int whence) {
  File& file = fileOf(handle);
  const toff_t base = whence == SEEK_CUR ? file.at : whence == SEEK_END ? file.bytes.size() : 0;
  file.at = static_cast<std::size_t>(base + offset);
  return file.at;
}

int close(thandle_t) { return 0; }
toff_t size(thandle_t handle) { return fileOf(handle).bytes.size(); }

TIFF* open(File& file, const char* mode) {
  return TIFFClientOpen("memory", mode, &file, read, write, seek, close, size, nullptr, nullptr);
}

std::size_t encode(const Bytes& plain, Bytes& packed, int compression) {
  packed.clear();
  File file{packed};
  TIFF* tiff = open(file, "w");
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, streamSide);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, streamSide);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, streamSide);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, compression);
  // The coder asks for data that it may change, but changes bytes only to turn their bits round.
  TIFFWriteEncodedStrip(tiff, 0, const_cast<std::uint8_t*>(plain.data()), static_cast<tmsize_t>(plain.size()));
  TIFFClose(tiff);
  return packed.size();
}

void decode(const Bytes& packed, Bytes& plain) {
  File file{const_cast<Bytes&>(packed)};  // only read
  TIFF* tiff = open(file, "r");
  TIFFReadEncodedStrip(tiff, 0, plain.data(), static_cast<tmsize_t>(kxbench::streamBytes));
  TIFFClose(tiff);
}

const kxbench::Group peer([](std::vector<kxbench::Row>& rows) {
  kxbench::addCoder(
      rows, "lzw",
      {"libtiff", [](const Bytes& plain, Bytes& packed) { return encode(plain, packed, COMPRESSION_LZW); }, decode});
  kxbench::addCoder(
      rows, "rle",
      {"libtiff", [](const Bytes& plain, Bytes& packed) { return encode(plain, packed, COMPRESSION_PACKBITS); },
       decode});
});

}  // namespace
