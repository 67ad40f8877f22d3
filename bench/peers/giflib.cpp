// LZW with 12 bits, as one GIF image in memory.
// SPDX-License-Identifier: MIT
#include <gif_lib.h>

#include <algorithm>
#include <cstring>

#include "../codec.h"

namespace {

using kxbench::Bytes;
using kxbench::streamSide;

struct Source {
  const Bytes& bytes;
  std::size_t at;
};

int append(GifFileType* file, const GifByteType* data, int length) {
  auto& bytes = *static_cast<Bytes*>(file->UserData);
  bytes.insert(bytes.end(), data, data + length);
  return length;
}

int read(GifFileType* file, GifByteType* data, int length) {
  auto& source = *static_cast<Source*>(file->UserData);
  const std::size_t bytes = std::min(static_cast<std::size_t>(length), source.bytes.size() - source.at);
  std::memcpy(data, source.bytes.data() + source.at, bytes);
  source.at += bytes;
  return static_cast<int>(bytes);
}

std::size_t encode(const Bytes& plain, Bytes& packed) {
  packed.clear();
  int error = 0;
  GifFileType* file = EGifOpen(&packed, append, &error);
  ColorMapObject* colours = GifMakeMapObject(256, nullptr);
  EGifPutScreenDesc(file, streamSide, streamSide, 256, 0, colours);
  EGifPutImageDesc(file, 0, 0, streamSide, streamSide, false, nullptr);
  Bytes row(streamSide);
  for (auto at = plain.begin(); at != plain.end(); at += streamSide) {
    std::copy_n(at, streamSide, row.begin());
    EGifPutLine(file, row.data(), streamSide);
  }
  EGifCloseFile(file, &error);
  GifFreeMapObject(colours);
  return packed.size();
}

void decode(const Bytes& packed, Bytes& plain) {
  Source source{packed, 0};
  int error = 0;
  GifFileType* file = DGifOpen(&source, read, &error);
  GifRecordType record;
  DGifGetRecordType(file, &record);
  DGifGetImageDesc(file);
  for (std::int32_t y = 0; y < streamSide; ++y)
    DGifGetLine(file, plain.data() + std::ptrdiff_t{y} * streamSide, streamSide);
  DGifCloseFile(file, &error);
}

const kxbench::Group peer([](std::vector<kxbench::Row>& rows) {
  kxbench::addCoder(rows, "lzw", {"giflib", encode, decode});
});

}  // namespace
