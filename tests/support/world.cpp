// SPDX-License-Identifier: MIT
#include "support/world.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "frame/heap.h"
#include "support/test_heap.h"

namespace kxtest {

namespace {

constexpr std::int32_t width = 16, height = 8;

enum Role : std::uint8_t { Target, Source, Depths, Weights, Heights, Pattern, Canvas };

/// Bitmaps by the names of the parameters; others get the target.
constexpr struct {
  std::string_view parameter;
  Role role;
} bitmapRoles[] = {{"src", Source},       {"source", Source}, {"zbuffer", Depths},
                   {"alphamap", Weights}, {"zmap", Heights},  {"pattern", Pattern}};

void check(std::uint32_t code) {
  if (code != 0) std::abort();
}

/// The n-th object, another one where there are fewer, or null.
template <typename T>
T* pick(const std::vector<T*>& objects, std::size_t n) {
  return objects.empty() ? nullptr : objects[n % objects.size()];
}

}  // namespace

Bitmap* World::makeBitmap(std::uint32_t format, std::int32_t bitmapWidth, std::int32_t bitmapHeight) {
  Bitmap* bitmap = nullptr;
  check(KX_createBitmap(&bitmap, bitmapWidth, bitmapHeight, format, 0, 0, &bitmapMethods));
  const std::int32_t bytes = bitmap->pitch * (bitmapHeight + 1);
  for (std::int32_t i = 0; i < bytes; ++i) bitmap->pixels[i] = static_cast<std::uint8_t>(i % 7 == 0 ? 0 : i * 37);
  if (bitmap->palette != nullptr)
    for (int i = 0; i < 768; ++i) bitmap->palette[i] = static_cast<std::uint8_t>(i * 89 >> 3);
  bitmaps.push_back(bitmap);
  return bitmap;
}

World::World(WorldStyle style) : mode{width, height, 0, 5}, textures{}, mark_(allocationMark()) {
  KX_getBitmapInterface(&bitmapMethods, nullptr, nullptr, 0);
  KX_get3DDeviceInterface(&deviceMethods, nullptr, nullptr, 0);
  screenMethods = {};
  screenMethods.version = 0x10000;
  otherBitmapMethods = bitmapMethods;
  otherDeviceMethods = deviceMethods;
  otherScreenMethods = screenMethods;

  makeBitmap(style.target, width, height);
  makeBitmap(style.source, width, height);
  for (int i = Depths; i <= Heights; ++i) makeBitmap(KX_FORMAT_GREY, width, height);
  makeBitmap(style.source, 3, 2);
  Bitmap* canvas = makeBitmap(KX_FORMAT_565, width, height);

  // A hand-made record for KX_createFromData, like the source.
  sourceRecord_ = *bitmaps[Source];
  sourceRecord_.flags = 0;

  display.windows[window()] = {width, height};
  display.modes = {displayMode(width, height, 60, 16), displayMode(width, height, 60, 24)};
  display.current = display.modes[0];
  Screen* screen = nullptr;
  check(KX_createScreen(&screen, nullptr, 0, &screenMethods));
  check(KX_setMode(screen, window(), KX_MODE_WINDOWED | KX_MODE_TWO_BUFFERS, nullptr));
  screens.push_back(screen);

  Device3D* device = nullptr;
  check(KX_create3DDevice(&device, canvas, 0, 0, 1, &deviceMethods));
  devices.push_back(device);
  check(KX_create3DDevice_Screen(&device, screen, 0, 0, 1, &deviceMethods));
  devices.push_back(device);
  makeDevices();
  makeLandscape();
}

void World::makeDevices() {
  Texture* texture = nullptr;
  check(KX_createTexture(&texture, devices[0], 8, 8, KX_FORMAT_565, 2));
  sheets.push_back(texture);
  Camera* camera = nullptr;
  check(KX_createCamera(&camera, devices[0]));
  const float angles[6] = {0.5f, 1.0f, 1.5f, 0, 0, 0};
  check(KX_cameraSetRotation(camera, angles));
  check(KX_cameraSetParameter(camera, 2, 4, 3, 16, 8));
  cameras.push_back(camera);
}

void World::makeLandscape() {
  Landscape* landscape = nullptr;
  check(LS_createLandscape(&landscape, devices[0], width, height, 1));
  for (int i = 0; i < width * height; ++i) {
    landscape->heightMap[i] = static_cast<std::uint8_t>(i * 29);
    landscape->textureMap[i] = static_cast<std::uint16_t>(i % 3);
  }
  check(LS_setTextureCount(landscape, 2));
  const std::uintptr_t handle = reinterpret_cast<std::uintptr_t>(&textureObject_);
  const std::uintptr_t handles[2] = {handle, handle};
  check(LS_setTextures(landscape, 0, handles, 2, 1, 1));
  for (TextureRef& texture : textures) texture.handle = handle;
  check(LS_convertToData(landscape, &savedLandscape_, &savedBytes_, textures.data(), listedTextures));
  landscapes.push_back(landscape);
}

World::~World() {
  // Coming and going as a window and as the whole display leaves nothing behind in the library.
  failAllocation(0);
  refuseBlocksAbove(0);
  display.windows[window()] = {width, height};
  display.modes = {displayMode(width, height, 60, 16)};
  for (int call = 0; call < ScriptedDisplay::callKinds; ++call)
    display.fail(static_cast<ScriptedDisplay::Call>(call), 0);
  for (Device3D* device : devices)
    while (device->renderingDepth > 0 && KX_endRendering(device) == 0) {
    }
  for (Screen* screen : screens) KX_restoreMode(screen);
  Screen* last = nullptr;
  check(KX_createScreen(&last, nullptr, 0, &screenMethods));
  check(KX_setMode(last, window(), KX_MODE_WINDOWED, nullptr));
  check(KX_setMode(last, window(), KX_MODE_FULL_SCREEN, &mode));
  check(KX_deleteScreen(last));
  freeBlocksSince(mark_);
}

GuardedBlock& World::data(const Export& function, const Parameter& parameter) {
  constexpr struct {
    std::string_view name;
    std::size_t bytes;
  } sizes[] = {{"palette", 768}, {"table15", 512}, {"table16", 512}, {"table8", 256},  {"rotation", 24}, {"values", 24},
               {"offset", 12},   {"angles", 12},   {"point", 12},    {"vertices", 72}, {"corners", 16},  {"tint", 4}};
  std::size_t bytes = dataBytes;
  for (const auto& item : sizes)
    if (item.name == parameter.name) bytes = item.bytes;
  if (parameter.name == "position") bytes = function.name.starts_with("RLE_") ? 4 : 24;
  constexpr std::string_view numbers[] = {"count",   "size",     "outSize",   "outCount", "average",  "lowest",
                                          "highest", "outX",     "outY",      "width",    "height",   "x1",
                                          "y1",      "x2",       "y2",        "srcX",     "srcY",     "dstX",
                                          "dstY",    "srcWidth", "srcHeight", "dstWidth", "dstHeight"};
  if (std::find(std::begin(numbers), std::end(numbers), parameter.name) != std::end(numbers)) bytes = 4;
  const bool saved = function.name.starts_with("LS_") && parameter.name == "data";
  if (saved) bytes = savedBytes_;
  const auto [place, isNew] = data_.try_emplace({parameter.name, bytes});
  if (isNew) {
    place->second = GuardedBlock(bytes);
    fillUsual(parameter, place->second);
    if (saved) std::memcpy(place->second.data(), savedLandscape_, bytes);
  }
  return place->second;
}

/// Numbers of 2, floats of 1, bytes in a pattern; a triangle.
void World::fillUsual(const Parameter& parameter, GuardedBlock& block) {
  const auto fill = [&block](auto value) {
    for (std::size_t i = 0; i + sizeof value <= block.size(); i += sizeof value)
      std::memcpy(block.data() + i, &value, sizeof value);
  };
  if (parameter.name == "vertices") {
    const VertexFloat corners[3] = {{1, 1, 0, 0, 0, 0}, {12, 2, 0, 7, 1, 0x080808}, {3, 7, 0, 2, 7, 0xF8F8F8}};
    std::memcpy(block.data(), corners, sizeof corners);
  } else if (block.size() == 12 || block.size() == 24) {
    fill(1.0f);
  } else if (block.size() == 4 || block.size() == 16) {
    fill(parameter.name == "position" ? 0 : 2);
  } else if (parameter.name == "handles") {
    fill(reinterpret_cast<std::uintptr_t>(&textureObject_));
  } else if (parameter.name == "driverFile" || parameter.name == "prefix" || parameter.name == "file") {
    fill(char{0});
    std::memcpy(block.data(), "none", 4);
  } else {
    for (std::size_t i = 0; i < block.size(); ++i) block.data()[i] = static_cast<std::uint8_t>(i * 7 + i / 13);
  }
}

void* World::usualPointer(const Export& function, std::size_t index) {
  const Parameter& parameter = function.parameters[index];
  const bool interface = parameter.name == "table";
  switch (parameter.kind) {
    case Kind::Bitmap: {
      if (function.name == "KX_createFromData") return &sourceRecord_;
      if (function.name.starts_with("KX_create3D")) return pick(bitmaps, Canvas);
      for (const auto& item : bitmapRoles)
        if (item.parameter == parameter.name) return pick(bitmaps, item.role);
      return pick(bitmaps, Target);
    }
    case Kind::BitmapTable:
      return interface ? &otherBitmapMethods : &bitmapMethods;
    case Kind::ScreenTable:
      return interface ? &otherScreenMethods : &screenMethods;
    case Kind::DeviceTable:
      return interface ? &otherDeviceMethods : &deviceMethods;
    case Kind::Screen:
      return pick(screens, 0);
    case Kind::Device:
      return pick(devices, 0);
    case Kind::Texture:
      return pick(sheets, 0);
    case Kind::Camera:
      return pick(cameras, 0);
    case Kind::Landscape:
      return pick(landscapes, 0);
    case Kind::VideoMode:
      return &mode;
    case Kind::TextureList:
      return textures.data();
    case Kind::Data:
      if (parameter.name == "window") return window();
      if (parameter.name == "driverFile" || parameter.name == "prefix") return nullptr;
      if (parameter.name == "outData" || (parameter.name == "result")) break;
      return data(function, parameter).data();
    default:
      break;
  }
  cells_[index] = nullptr;
  return &cells_[index];
}

Argument World::usual(const Export& function, std::size_t parameter) {
  constexpr struct {
    std::string_view name;
    std::int32_t value;
  } numbers[] = {
      {"width", 8},       {"height", 8},       {"format", KX_FORMAT_565},
      {"x2", 5},          {"y2", 4},           {"w", 3},
      {"h", 3},           {"dw", 3},           {"dh", 3},
      {"sw", 3},          {"sh", 3},           {"alpha", 100},
      {"z", 100},         {"zoffset", 3},      {"spacing", 2},
      {"colour", 0x234},  {"tolerance", 5},    {"brightness", 10},
      {"contrast", 20},   {"pivot", 128},      {"left", 0},
      {"top", 0},         {"right", 7},        {"bottom", 7},
      {"srcLeft", 0},     {"srcTop", 0},       {"srcRight", 15},
      {"srcBottom", 15},  {"dstLeft", 0},      {"dstTop", 0},
      {"dstRight", 15},   {"dstBottom", 15},   {"roughness", 2},
      {"minHeight", 10},  {"maxHeight", 200},  {"rMax", 2},
      {"base", 10},       {"range", 100},      {"count", 2},
      {"first", 0},       {"levelCount", 2},   {"damping", 4},
      {"cellSize", 2},    {"imageWidth", 16},  {"imageHeight", 16},
      {"cellsX", 3},      {"cellsY", 3},       {"shadeShift", 2},
      {"length", 100},    {"srcLength", 100},  {"maxOut", 100},
      {"elementSize", 2}, {"maxElements", 50}, {"seed", 7},
      {"code", 0x2000},   {"integers", 0},     {"mode", 0},
      {"driverOnly", 0},  {"pixelFormat", 5},  {"flags", KX_MODE_WINDOWED | KX_MODE_TWO_BUFFERS},
  };
  const Parameter& item = function.parameters[parameter];
  Argument argument{};
  if (!isNumber(item.kind)) {
    argument.pointer = usualPointer(function, parameter);
    return argument;
  }
  std::int32_t value = item.name.ends_with("Pitch") ? 64 : 1;
  for (const auto& number : numbers)
    if (number.name == item.name) value = number.value;
  if (item.name == "textureCount") value = function.name == "LS_createFromData" ? 2 : listedTextures;
  if (function.name.starts_with("LS_") && item.name == "size") value = static_cast<std::int32_t>(savedBytes_);
  if (item.kind == Kind::Real)
    argument.real = static_cast<float>(value);
  else if (item.kind == Kind::Byte)
    argument.byte = static_cast<std::uint8_t>(value);
  else
    argument.number = value;
  return argument;
}

std::vector<Argument> World::usualArguments(const Export& function) {
  std::vector<Argument> arguments;
  for (std::size_t i = 0; i < function.parameters.size(); ++i) arguments.push_back(usual(function, i));
  return arguments;
}

void World::forgetDeleted(const Export& function, const void* object) {
  if (function.name.find("delete") == std::string_view::npos) return;
  std::erase(bitmaps, object);
  std::erase(screens, object);
  std::erase(devices, object);
  std::erase(sheets, object);
  std::erase(cameras, object);
  std::erase(landscapes, object);
}

bool World::testsPointer(const Export& function) {
  constexpr std::string_view untested[] = {"KX_clip", "LZ_", "RLE_", "KX_calculateCRC", "KX_findNearestColor"};
  return std::none_of(std::begin(untested), std::end(untested),
                      [&](std::string_view prefix) { return function.name.starts_with(prefix); });
}

bool World::memorySuffices(const Export& function, const std::vector<Argument>& arguments) const {
  // More than any buffer here, and small enough to be multiplied.
  constexpr std::int64_t enough = 1 << 20;
  const auto number = [&](std::string_view name) -> std::int64_t {
    const int index = function.find(name);
    return index < 0 ? 0 : std::clamp<std::int64_t>(arguments[static_cast<std::size_t>(index)].number, -enough, enough);
  };
  const auto unsignedNumber = [&](std::string_view name) { return number(name) < 0 ? enough : number(name); };
  const auto area = [&](std::string_view pitch, std::int64_t rows, std::int64_t rowBytes) {
    return number(pitch) > 0 && rows < enough && rowBytes < enough &&
           number(pitch) * std::max<std::int64_t>(rows, 0) + rowBytes <= std::int64_t{dataBytes};
  };
  constexpr std::int64_t room = dataBytes;
  const std::string_view name = function.name;
  if (name == "KX_calculateCRC") return number("length") <= room;
  if (name == "LZ_compress" || name == "RLE_compress") return unsignedNumber("count") <= room / 3;
  if (name == "RLE_compressWords") return unsignedNumber("count") * (unsignedNumber("elementSize") + 1) <= room / 2;
  if (name == "LZ_decompress") return unsignedNumber("srcLength") <= room && unsignedNumber("maxOut") <= room;
  if (name.starts_with("RLE_decompress")) {
    const std::int64_t size = name == "RLE_decompress" ? 1 : unsignedNumber("elementSize");
    const std::int64_t most = name == "RLE_decompress" ? unsignedNumber("maxOut") : unsignedNumber("maxElements");
    return number("srcLength") >= 0 && number("srcLength") <= room && size < room && (most + 127) * size <= room;
  }
  if (name.starts_with("KX_convert")) {
    const std::int64_t w = number("width"), h = number("height");
    return w < 1 || h < 1 || (area("dstPitch", h, 4 * w) && area("srcPitch", h, 4 * w) && area("alphaPitch", h, w));
  }
  if (name == "KX_calculateWaterMap")
    return area("targetPitch", number("height"), 2 * number("width")) &&
           area("currentPitch", number("height"), 2 * number("width"));
  if (name == "KX_drawWaterBitmap") {
    const std::int64_t cell = number("cellSize");
    const auto small = [&](std::string_view parameter) { return number(parameter) < 1000; };
    return small("cellSize") && small("cellsX") && small("cellsY") && small("mapX") && small("mapY") &&
           small("destX") && small("destY") && small("imageX") && small("imageY") && small("imageWidth") &&
           small("imageHeight") && number("mapX") > 0 &&
           area("destPitch", number("destY") + number("cellsY") * cell,
                2 * (number("destX") + number("cellsX") * cell)) &&
           area("waterPitch", number("mapY") + number("cellsY") + 1, 2 * (number("mapX") + number("cellsX") + 2)) &&
           area("imagePitch", number("imageY") + number("imageHeight"), 2 * (number("imageX") + number("imageWidth")));
  }
  if (name == "LS_setTextures") {
    const auto* const landscape = static_cast<const Landscape*>(arguments[0].pointer);
    if (reinterpret_cast<std::uintptr_t>(landscape) < 65536) return true;
    constexpr auto handles = static_cast<std::int64_t>(dataBytes / sizeof(std::uintptr_t));
    return number("count") <= handles || number("count") > landscape->textureCount;
  }
  if (name == "LS_convertToData" || name == "LS_createFromData")
    return number("textureCount") <= listedTextures || name == "LS_createFromData";
  return true;
}

}  // namespace kxtest
