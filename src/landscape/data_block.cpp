// The saved form of a landscape: one little-endian block, header, maps, texture table.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <bit>
#include <cstring>

#include "frame/heap.h"
#include "landscape/map_access.h"

namespace kx {

static_assert(std::endian::native == std::endian::little, "the block is written as the numbers lie in memory");

namespace {

constexpr std::int32_t mostTextures = 32767;
constexpr std::size_t nameBytes = sizeof(TextureRef::name);

/// The first 68 bytes of a block.
struct Header {
  std::uint32_t totalBytes;
  std::uint32_t position[6];
  float scale[6];
  std::int32_t width;
  std::int32_t height;
  std::uint32_t colourLight;
  std::int32_t textureCount;
};
static_assert(sizeof(Header) == 68);

/// Where the sections of a block begin, in bytes.
struct Sections {
  std::uint64_t heights, lights, textures, parameters, flags, values, names, end;

  Sections(std::int32_t width, std::int32_t height, std::uint32_t colourLight, std::int32_t textureCount) {
    const std::uint64_t cells = cellCount(width, height);
    const auto count = static_cast<std::uint64_t>(textureCount);
    heights = sizeof(Header);
    lights = heights + cells;
    textures = lights + cells * storedLightBytes(colourLight);
    parameters = textures + cells * 2;
    flags = parameters + count * 4;
    values = flags + count;
    names = values + count * 4;
    end = names + count * nameBytes;
  }
};

Result checkTextureList(const TextureRef* textures, std::int32_t count) {
  return count < 0 || (count > 0 && isBadWritePointer(textures)) ? Result::IllegalParameter : Result::Ok;
}

/// The caller's entry for a handle, or null.
const TextureRef* findTexture(const TextureRef* textures, std::int32_t count, std::uintptr_t handle) {
  const TextureRef* end = textures + count;
  const TextureRef* found =
      std::find_if(textures, end, [&](const TextureRef& texture) { return texture.handle == handle; });
  return found == end ? nullptr : found;
}

Result convertToData(const Landscape* landscape, void** outData, std::uint32_t* outSize, const TextureRef* textures,
                     std::int32_t textureCount) {
  KX_TRY(checkWritable(landscape, outData, outSize));
  KX_TRY(checkTextureList(textures, textureCount));

  const Sections at(landscape->width, landscape->height, landscape->colourLight, landscape->textureCount);
  HeapArray<std::uint8_t> block = makeHeapArray<std::uint8_t>(at.end);
  if (!block) return Result::OutOfMemory;

  Header header{};
  header.totalBytes = static_cast<std::uint32_t>(at.end);
  std::copy_n(landscape->position, 6, header.position);
  std::copy_n(landscape->scale, 6, header.scale);
  header.width = landscape->width;
  header.height = landscape->height;
  header.colourLight = landscape->colourLight;
  header.textureCount = landscape->textureCount;

  std::uint8_t* data = block.get();
  std::memcpy(data, &header, sizeof header);
  std::memcpy(data + at.heights, landscape->heightMap, asSize(at.lights - at.heights));
  std::memcpy(data + at.lights, landscape->lightMap, asSize(at.textures - at.lights));
  std::memcpy(data + at.textures, landscape->textureMap, asSize(at.parameters - at.textures));
  if (landscape->textureCount > 0) {
    std::memcpy(data + at.parameters, landscape->textureParameters, asSize(at.flags - at.parameters));
    std::memcpy(data + at.flags, landscape->textureFlags, asSize(at.values - at.flags));
  }
  for (std::int32_t i = 0; i < landscape->textureCount; ++i) {
    const TextureRef* texture = findTexture(textures, textureCount, landscape->textureHandles[i]);
    if (texture == nullptr) return Result::TextureNotFound;
    const auto index = static_cast<std::uint64_t>(i);
    std::memcpy(data + at.values + index * 4, &texture->value, 4);
    std::memcpy(data + at.names + index * nameBytes, texture->name, nameBytes);
  }
  *outSize = header.totalBytes;
  *outData = block.release();
  return Result::Ok;
}

/// Reads the header of a block that claims to hold `size` bytes. A block whose parts do not add up is refused.
Result readHeader(Header* header, const void* data, std::uint32_t size) {
  if (size < sizeof(Header)) return Result::FileHeaderDestroyed;
  std::memcpy(header, data, sizeof *header);
  if (header->totalBytes != size || header->width < 1 || header->height < 1 || header->textureCount < 0)
    return Result::FileHeaderDestroyed;
  // Sizes beyond the block's would overflow the sums below.
  if (cellCount(header->width, header->height) > size) return Result::FileHeaderDestroyed;
  const Sections at(header->width, header->height, header->colourLight, header->textureCount);
  if (at.end != size) return Result::FileHeaderDestroyed;
  return header->textureCount > mostTextures ? Result::TooManyTextures : Result::Ok;
}

Result getTextureList(const void* data, std::uint32_t size, TextureRef** outList, std::int32_t* outCount) {
  KX_TRY(checkWritable(data, outList, outCount));
  Header header{};
  KX_TRY(readHeader(&header, data, size));
  const Sections at(header.width, header.height, header.colourLight, header.textureCount);
  const auto* bytes = static_cast<const std::uint8_t*>(data);

  HeapArray<TextureRef> list;
  if (header.textureCount > 0) {
    list = makeHeapArray<TextureRef>(static_cast<std::uint64_t>(header.textureCount));
    if (!list) return Result::OutOfMemory;
  }
  for (std::int32_t i = 0; i < header.textureCount; ++i) {
    const auto index = static_cast<std::size_t>(i);
    TextureRef& texture = list[index];
    texture = {};
    std::memcpy(&texture.value, bytes + at.values + index * 4, 4);
    std::memcpy(texture.name, bytes + at.names + index * nameBytes, nameBytes);
  }
  *outList = list.release();
  *outCount = header.textureCount;
  return Result::Ok;
}

/// Fills a landscape of the block's size with the block's contents and the caller's texture handles.
Result restore(Landscape& landscape, const Header& header, const std::uint8_t* bytes, const TextureRef* textures) {
  std::copy_n(header.position, 6, landscape.position);
  std::copy_n(header.scale, 6, landscape.scale);
  KX_TRY(fromCode(LS_setTextureCount(&landscape, header.textureCount)));

  const Sections at(header.width, header.height, header.colourLight, header.textureCount);
  std::memcpy(landscape.heightMap, bytes + at.heights, asSize(at.lights - at.heights));
  std::memcpy(landscape.lightMap, bytes + at.lights, asSize(at.textures - at.lights));
  std::memcpy(landscape.textureMap, bytes + at.textures, asSize(at.parameters - at.textures));
  if (header.textureCount > 0) {
    std::memcpy(landscape.textureParameters, bytes + at.parameters, asSize(at.flags - at.parameters));
    std::memcpy(landscape.textureFlags, bytes + at.flags, asSize(at.values - at.flags));
  }
  for (std::int32_t i = 0; i < header.textureCount; ++i) {
    if (isBadWritePointer(reinterpret_cast<const void*>(textures[i].handle))) return Result::TextureNotFound;
    landscape.textureHandles[i] = textures[i].handle;
  }
  return Result::Ok;
}

Result createFromData(Landscape** result, Device3D* device, const void* data, std::uint32_t size,
                      const TextureRef* textures, std::int32_t textureCount) {
  KX_TRY(checkWritable(result, data));
  KX_TRY(checkTextureList(textures, textureCount));
  Header header{};
  KX_TRY(readHeader(&header, data, size));
  if (textureCount != header.textureCount) return Result::IllegalParameter;

  Landscape* landscape = nullptr;
  KX_TRY(fromCode(LS_createLandscape(&landscape, device, header.width, header.height, header.colourLight)));
  const Result restored = restore(*landscape, header, static_cast<const std::uint8_t*>(data), textures);
  if (restored == Result::Ok) {
    *result = landscape;
    return Result::Ok;
  }
  KX_TRY(fromCode(LS_deleteLandscape(landscape)));
  mmgr_free(landscape);
  return restored;
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL LS_convertToData(const Landscape* landscape, void** outData, std::uint32_t* outSize,
                                       const TextureRef* textures, std::int32_t textureCount) {
  return toCode(kx::convertToData(landscape, outData, outSize, textures, textureCount));
}

std::uint32_t KX_CALL LS_getTextureListFromData(const void* data, std::uint32_t size, TextureRef** outList,
                                                std::int32_t* outCount) {
  return toCode(kx::getTextureList(data, size, outList, outCount));
}

std::uint32_t KX_CALL LS_createFromData(Landscape** result, Device3D* device, const void* data, std::uint32_t size,
                                        const TextureRef* textures, std::int32_t textureCount) {
  return toCode(kx::createFromData(result, device, data, size, textures, textureCount));
}
