// Any bytes as a saved landscape: both reading functions, and back again when the block is good.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "frame/heap.h"
#include "fuzz/target.h"
#include "kxgraphic/landscape.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Device3D device{};
  static std::uint32_t object;
  const auto bytes = static_cast<std::uint32_t>(size);
  TextureRef* list = nullptr;
  std::int32_t count = 0;
  const std::uint32_t listed = LS_getTextureListFromData(data, bytes, &list, &count);
  Landscape* landscape = nullptr;
  if (listed != 0) {
    // A block that one function refuses is refused by the other, whatever the list.
    require(list == nullptr && LS_createFromData(&landscape, &device, data, bytes, nullptr, 0) != 0);
    return 0;
  }
  std::for_each(list, list + count,
                [](TextureRef& texture) { texture.handle = reinterpret_cast<std::uintptr_t>(&object); });
  require(LS_createFromData(&landscape, &device, data, bytes, list, count) == 0);

  // Every texture has the same handle here, so a list of one entry finds them all; only names and values differ then.
  void* saved = nullptr;
  std::uint32_t savedSize = 0;
  require(LS_convertToData(landscape, &saved, &savedSize, list, count) == 0);
  const std::size_t kept = size - static_cast<std::size_t>(count) * 68;
  require(savedSize == bytes && std::memcmp(saved, data, kept) == 0);
  mmgr_free(saved);
  if (list != nullptr) mmgr_free(list);
  LS_deleteLandscape(landscape);
  mmgr_free(landscape);
  return 0;
}
