// The landscape record: making, copying and releasing it, its position, scale and texture table.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>

#include "frame/heap.h"
#include "landscape/map_access.h"

namespace kx {

namespace {

constexpr std::int32_t mostTextures = 32767;

/// The blocks of a landscape under construction, released with their scope until they are handed to the record.
struct Maps {
  HeapArray<std::uint8_t> heights;
  HeapArray<std::uint8_t> lights;
  HeapArray<std::uint16_t> textures;

  [[nodiscard]] bool complete() const { return heights && lights && textures; }

  void moveInto(Landscape& landscape) {
    landscape.heightMap = heights.release();
    landscape.lightMap = lights.release();
    landscape.textureMap = textures.release();
  }
};

struct TextureTable {
  HeapArray<std::uintptr_t> handles;
  HeapArray<std::uint32_t> parameters;
  HeapArray<std::uint8_t> flags;

  TextureTable() = default;

  explicit TextureTable(std::int32_t count)
      : handles(makeHeapArray<std::uintptr_t>(static_cast<std::uint64_t>(count))),
        parameters(makeHeapArray<std::uint32_t>(static_cast<std::uint64_t>(count))),
        flags(makeHeapArray<std::uint8_t>(static_cast<std::uint64_t>(count))) {}

  [[nodiscard]] bool complete() const { return handles && parameters && flags; }

  void copyFrom(const Landscape& landscape, std::size_t count) const {
    std::copy_n(landscape.textureHandles, count, handles.get());
    std::copy_n(landscape.textureParameters, count, parameters.get());
    std::copy_n(landscape.textureFlags, count, flags.get());
  }

  void moveInto(Landscape& landscape) {
    landscape.textureHandles = handles.release();
    landscape.textureParameters = parameters.release();
    landscape.textureFlags = flags.release();
  }
};

/// Gives back a block that is present: a program's own memory manager need not know null.
template <typename T>
void releaseBlock(T*& block) {
  if (block != nullptr) mmgr_free(block);
  block = nullptr;
}

void releaseTextureTable(Landscape& landscape) {
  releaseBlock(landscape.textureHandles);
  releaseBlock(landscape.textureParameters);
  releaseBlock(landscape.textureFlags);
}

Result create(Landscape** result, Device3D* device, std::int32_t width, std::int32_t height,
              std::uint32_t colourLight) {
  KX_TRY(checkWritable(result, device));
  if (width < 1 || height < 1) return Result::IllegalSize;

  HeapRecord<Landscape> landscape = makeRecord<Landscape>();
  if (!landscape) return Result::OutOfMemory;
  landscape->device = device;
  std::fill_n(landscape->scale, 3, 1.0F);
  landscape->width = width;
  landscape->height = height;
  landscape->colourLight = colourLight;

  const std::uint64_t cells = cellCount(width, height);
  Maps maps;
  maps.heights = makeHeapArray<std::uint8_t>(cells);
  if (maps.heights) maps.lights = makeHeapArray<std::uint8_t>(cells * 3);
  if (maps.lights) maps.textures = makeHeapArray<std::uint16_t>(cells);
  if (!maps.complete()) return Result::OutOfMemory;
  std::memset(maps.lights.get(), 0, asSize(cells * 3));
  // Settled: only the first half of the texture map is cleared; a texturing pass sets the rest.
  std::memset(maps.textures.get(), 0, asSize(cells));
  maps.moveInto(*landscape);
  *result = landscape.release();
  return Result::Ok;
}

// Settled: the record's own block is the caller's loss; only what hangs on it is released.
Result release(Landscape* landscape) {
  KX_TRY(checkWritable(landscape));
  releaseBlock(landscape->heightMap);
  releaseBlock(landscape->lightMap);
  releaseBlock(landscape->textureMap);
  releaseTextureTable(*landscape);
  return Result::Ok;
}

Result clone(Landscape** result, const Landscape* source) {
  KX_TRY(checkWritable(result, source));
  HeapRecord<Landscape> copy = makeRecord<Landscape>();
  if (!copy) return Result::OutOfMemory;
  copy->device = source->device;
  std::copy_n(source->position, 6, copy->position);
  std::copy_n(source->scale, 6, copy->scale);
  copy->width = source->width;
  copy->height = source->height;
  copy->colourLight = source->colourLight;
  copy->textureCount = source->textureCount;

  TextureTable table;
  if (source->textureCount > 0) {
    table = TextureTable(source->textureCount);
    if (!table.complete()) return Result::OutOfMemory;
    table.copyFrom(*source, static_cast<std::size_t>(source->textureCount));
  }
  const std::uint64_t cells = cellCount(*source);
  Maps maps;
  maps.heights = makeHeapArray<std::uint8_t>(cells);
  if (maps.heights) maps.textures = makeHeapArray<std::uint16_t>(cells);
  if (maps.textures) maps.lights = makeHeapArray<std::uint8_t>(cells * resizedLightBytes(source->colourLight));
  if (!maps.complete()) return Result::OutOfMemory;
  std::memcpy(maps.heights.get(), source->heightMap, asSize(cells));
  std::memcpy(maps.textures.get(), source->textureMap, asSize(cells * 2));
  std::memset(maps.lights.get(), 0, asSize(cells * resizedLightBytes(source->colourLight)));
  std::memcpy(maps.lights.get(), source->lightMap, asSize(cells * storedLightBytes(source->colourLight)));

  maps.moveInto(*copy);
  if (source->textureCount > 0) table.moveInto(*copy);
  *result = copy.release();
  return Result::Ok;
}

Result setPosition(Landscape* landscape, const std::uint32_t* values) {
  KX_TRY(checkWritable(landscape));
  if (isBadReadPointer(values)) return Result::IllegalParameter;
  std::copy_n(values, 6, landscape->position);
  return Result::Ok;
}

Result setScale(Landscape* landscape, const float* values) {
  KX_TRY(checkWritable(landscape));
  if (isBadReadPointer(values)) return Result::IllegalParameter;
  // A value that is no number compares false and passes.
  for (int i = 0; i < 3; ++i)
    if (values[i] <= 0.0F) return Result::IllegalParameter;
  std::copy_n(values, 6, landscape->scale);
  return Result::Ok;
}

Result setTextureCount(Landscape* landscape, std::int32_t count) {
  KX_TRY(checkWritable(landscape));
  if (count == landscape->textureCount) return Result::Ok;
  if (count > mostTextures) return Result::TooManyTextures;
  if (count <= 0) {
    releaseTextureTable(*landscape);
    landscape->textureCount = 0;
    return Result::Ok;
  }
  TextureTable table(count);
  if (!table.complete()) return Result::OutOfMemory;
  const std::int32_t kept = std::max(0, std::min(count, landscape->textureCount));
  const auto fresh = static_cast<std::size_t>(count - kept);
  table.copyFrom(*landscape, static_cast<std::size_t>(kept));
  std::fill_n(table.handles.get() + kept, fresh, std::uintptr_t{0});
  std::fill_n(table.parameters.get() + kept, fresh, 0U);
  std::fill_n(table.flags.get() + kept, fresh, std::uint8_t{0});
  releaseTextureTable(*landscape);
  table.moveInto(*landscape);
  landscape->textureCount = count;
  return Result::Ok;
}

Result setTextures(Landscape* landscape, std::int32_t first, const std::uintptr_t* handles, std::int32_t count,
                   std::uint32_t parameter, std::uint8_t flags) {
  KX_TRY(checkWritable(landscape, handles));
  if (count < 1 || first < 0 || std::int64_t{first} + count > landscape->textureCount) return Result::IllegalParameter;
  std::copy_n(handles, count, landscape->textureHandles + first);
  std::fill_n(landscape->textureParameters + first, count, parameter);
  std::fill_n(landscape->textureFlags + first, count, flags);
  return Result::Ok;
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL LS_createLandscape(Landscape** result, Device3D* device, std::int32_t width, std::int32_t height,
                                         std::uint32_t colourLight) {
  return toCode(kx::create(result, device, width, height, colourLight));
}

std::uint32_t KX_CALL LS_deleteLandscape(Landscape* landscape) { return toCode(kx::release(landscape)); }

std::uint32_t KX_CALL LS_cloneLandscape(Landscape** result, const Landscape* source) {
  return toCode(kx::clone(result, source));
}

std::uint32_t KX_CALL LS_setPosition(Landscape* landscape, const std::uint32_t* values) {
  return toCode(kx::setPosition(landscape, values));
}

std::uint32_t KX_CALL LS_setScale(Landscape* landscape, const float* values) {
  return toCode(kx::setScale(landscape, values));
}

std::uint32_t KX_CALL LS_setTextureCount(Landscape* landscape, std::int32_t count) {
  return toCode(kx::setTextureCount(landscape, count));
}

std::uint32_t KX_CALL LS_setTextures(Landscape* landscape, std::int32_t first, const std::uintptr_t* handles,
                                     std::int32_t count, std::uint32_t parameter, std::uint8_t flags) {
  return toCode(kx::setTextures(landscape, first, handles, count, parameter, flags));
}
