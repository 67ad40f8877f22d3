// Any bytes as a sequence of calls of the whole interface: objects come and go, numbers and pointers may be anything,
// the display answers by a script, allocations fail. Blits are compared with the plain reference on the way; at the end
// everything is deleted and nothing may be left.
//
// The caller's duties are kept: an object is deleted once and after those that stand on it, and memory is as large as
// the arguments say.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>
#include <optional>

#include "frame/heap.h"
#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "support/extremes.h"
#include "support/reference_blit.h"
#include "support/test_heap.h"
#include "support/world.h"

namespace {

using kxtest::Argument;
using kxtest::ByteReader;
using kxtest::Export;
using kxtest::Kind;
using kxtest::World;

constexpr std::size_t largestBlock = 1 << 17;
constexpr std::size_t mostObjects = 12;  ///< of a kind; further ones are deleted at once

/// Functions with a target of their own, or that write files.
bool isLeftOut(const Export& function) {
  return function.name.starts_with("LZ_") || function.name.starts_with("RLE_") || function.name == "KX_reportError" ||
         function.placeholder;
}

class Session {
public:
  explicit Session(ByteReader& bytes) : bytes_(bytes) {
    kxtest::refuseBlocksAbove(largestBlock);
    world_.display.windows[&smallWindow_] = {5, 3};
    world_.display.windows[&emptyWindow_] = {0, 0};
  }

  ~Session() { deleteEverything(); }

  void step() {
    const auto all = kxtest::allExports();
    const Export& function = all[bytes_.below(static_cast<std::uint32_t>(all.size()))];
    if (isLeftOut(function)) return;
    std::vector<Argument> arguments;
    for (std::size_t i = 0; i < function.parameters.size(); ++i) arguments.push_back(choose(function, i));
    if (!world_.memorySuffices(function, arguments) || !mayCall(function, arguments)) return;
    const bool failing = bytes_.below(32) == 0;
    if (failing) kxtest::failAllocation(1 + bytes_.below(8));
    if (bytes_.below(64) == 0) world_.display.fail(static_cast<kxtest::ScriptedDisplay::Call>(bytes_.below(3)), 1);
    Check check(function, arguments);
    const std::uint32_t code = function(arguments.data());
    kxtest::failAllocation(0);
    world_.display.presented.clear();
    if (code == 0) check.compare();
    adopt(function, arguments, code);
  }

private:
  // What a call is compared with: memory as it was before.
  class Check {
  public:
    Check(const Export& function, const std::vector<Argument>& arguments);
    void compare();

  private:
    std::optional<kxtest::BlitCall> blit_;
    std::vector<std::uint8_t> pixels_, depths_;
    std::size_t weightBytes_ = 0, heightBytes_ = 0;
  };

  std::int32_t number() {
    const std::uint8_t choice = bytes_.byte();
    if (choice < 160) return choice % 32 - 4;
    if (choice < 200) return choice;
    if (choice < 240) return kxtest::extremeNumbers[choice % kxtest::extremeCount];
    return static_cast<std::int32_t>(bytes_.word());
  }

  template <typename T>
  T* any(const std::vector<T*>& objects, std::uint8_t choice) {
    return objects.empty() ? nullptr : objects[choice % objects.size()];
  }

  Argument choose(const Export& function, std::size_t index);
  void* choosePointer(const Export& function, std::size_t index);
  Bitmap* chooseBitmap(const Export& function, std::uint8_t choice);
  Bitmap* freshRecord();
  void fillData(kxtest::GuardedBlock& block);
  bool mayCall(const Export& function, std::vector<Argument>& arguments);
  bool mayDelete(const void* object) const;
  void adopt(const Export& function, const std::vector<Argument>& arguments, std::uint32_t code);
  void deleteEverything();

  template <typename T, typename Delete>
  void adoptOne(std::vector<T*>& objects, void* object, Delete destroy) {
    if (objects.size() < mostObjects)
      objects.push_back(static_cast<T*>(object));
    else
      destroy(static_cast<T*>(object));
  }

  ByteReader& bytes_;
  World world_;
  Bitmap record_{};
  std::uint32_t smallWindow_ = 0, emptyWindow_ = 0;
};

Argument Session::choose(const Export& function, std::size_t index) {
  const kxtest::Parameter& parameter = function.parameters[index];
  Argument argument{};
  // Half of the arguments are as usual, so that most calls get far.
  const std::uint8_t how = bytes_.byte();
  if (how < 96 && parameter.kind != Kind::Bitmap && parameter.name != "source") return world_.usual(function, index);
  if (kxtest::isNumber(parameter.kind)) {
    argument.number = number();
    if (parameter.kind == Kind::Real) argument = kxtest::extreme(Kind::Real, bytes_.byte());
    if (parameter.name == "format" && how < 240) argument.word = bytes_.below(64);
    // The clock would make a finding hard to repeat.
    if (parameter.name == "seed" && argument.number == 0) argument.number = 1;
    return argument;
  }
  argument.pointer = how >= 248 && World::testsPointer(function)
                         ? reinterpret_cast<void*>(std::uintptr_t{kxtest::badAddresses[how % 5]})
                         : choosePointer(function, index);
  return argument;
}

void* Session::choosePointer(const Export& function, std::size_t index) {
  const kxtest::Parameter& parameter = function.parameters[index];
  const std::uint8_t choice = bytes_.byte();
  switch (parameter.kind) {
    case Kind::Bitmap:
      return chooseBitmap(function, choice);
    case Kind::Screen:
      return any(world_.screens, choice);
    case Kind::Device:
      return any(world_.devices, choice);
    case Kind::Texture:
      return any(world_.sheets, choice);
    case Kind::Camera:
      return any(world_.cameras, choice);
    case Kind::Landscape:
      return any(world_.landscapes, choice);
    case Kind::Data:
      if (parameter.name == "window") return choice % 2 == 0 ? &smallWindow_ : &emptyWindow_;
      if (parameter.name != "data") fillData(world_.data(function, parameter));
      break;
    default:
      break;
  }
  return world_.usual(function, index).pointer;
}

Bitmap* Session::chooseBitmap(const Export& function, std::uint8_t choice) {
  if (function.name == "KX_createFromData") return freshRecord();
  if (choice < 224 || function.name == "KX_deleteBitmap" || function.name == "KX_setPaletteReference" ||
      function.name.starts_with("KX_create3D"))
    return any(world_.bitmaps, choice);
  const Device3D* device = any(world_.devices, choice);
  const Texture* texture = any(world_.sheets, choice);
  const Screen* screen = any(world_.screens, choice);
  if (choice < 232 && device != nullptr && device->zBuffer != nullptr) return device->zBuffer;
  if (choice < 240 && texture != nullptr) return texture->levels[0];
  if (screen != nullptr && screen->back != nullptr) return screen->back;
  return any(world_.bitmaps, choice);
}

/// A record of the caller's, plain or packed, with blocks of its own that hold what it says.
Bitmap* Session::freshRecord() {
  constexpr std::uint32_t formats[] = {0, 3, 4, 5, 6, 7};
  record_ = {};
  record_.format = formats[bytes_.below(6)];
  record_.width = bytes_.between(1, 60);
  record_.height = bytes_.between(1, 12);
  const std::int64_t pixelBytes = kxtest::wholeBytes(record_.format);
  const auto height = static_cast<std::size_t>(record_.height);
  std::size_t size = 0;
  if (pixelBytes != 0 && bytes_.below(2) != 0) {
    record_.format |= KX_STORAGE_PACKED;
    const std::size_t streamBytes = 64;
    size = streamBytes + static_cast<std::size_t>(128 * pixelBytes + record_.width * (1 + pixelBytes));
    record_.rowTable = static_cast<std::uint32_t*>(mmgr_alloc(height * sizeof(std::uint32_t)));
    for (std::size_t y = 0; y < height; ++y) record_.rowTable[y] = bytes_.below(streamBytes);
  } else {
    record_.pitch = record_.width * 3 + bytes_.between(0, 5);
    size = static_cast<std::size_t>(record_.pitch) * (height + 1);
  }
  record_.pixels = static_cast<std::uint8_t*>(mmgr_alloc(size));
  std::memset(record_.pixels, 0, size);
  for (std::size_t i = 0; i < std::min<std::size_t>(size, 64); ++i) record_.pixels[i] = bytes_.byte();
  if ((record_.format & 15) == KX_FORMAT_PALETTE && bytes_.below(4) != 0) {
    record_.palette = static_cast<std::uint8_t*>(mmgr_alloc(768));
    std::memset(record_.palette, bytes_.byte(), 768);
  }
  return &record_;
}

void Session::fillData(kxtest::GuardedBlock& block) {
  const std::uint8_t how = bytes_.byte();
  const std::size_t numbers = std::min<std::size_t>(block.size() / 4, 18);
  for (std::size_t i = 0; i < numbers && how < 200; ++i) {
    const std::int32_t value = number();
    Argument argument{};
    argument.number = value;
    if (how < 100)
      argument.real =
          how < 60 ? static_cast<float>(value) : kxtest::extreme(Kind::Real, static_cast<std::uint32_t>(value)).real;
    std::memcpy(block.data() + 4 * i, &argument.word, 4);
  }
}

/// Nothing stands on the object.
bool Session::mayDelete(const void* object) const {
  const auto stands = [object](const auto* user) {
    using User = std::remove_cvref_t<decltype(*user)>;
    if constexpr (std::is_same_v<User, Device3D>) {
      return user->target == object || user->screen == object;
    } else {
      return static_cast<const void*>(user->device) == object;
    }
  };
  const auto noneStands = [&](const auto& users) { return std::none_of(users.begin(), users.end(), stands); };
  return noneStands(world_.devices) && noneStands(world_.sheets) && noneStands(world_.cameras) &&
         noneStands(world_.landscapes);
}

bool Session::mayCall(const Export& function, std::vector<Argument>& arguments) {
  if (function.name.find("delete") != std::string_view::npos) return mayDelete(arguments[0].pointer);
  // The other tables serve no object, those of the objects stay as they are.
  if (const int table = function.find("table"); table >= 0) {
    constexpr std::uintptr_t low = 65536;
    void*& pointer = arguments[static_cast<std::size_t>(table)].pointer;
    if (reinterpret_cast<std::uintptr_t>(pointer) >= low)
      pointer = world_.usual(function, static_cast<std::size_t>(table)).pointer;
  }
  return true;
}

void Session::adopt(const Export& function, const std::vector<Argument>& arguments, std::uint32_t code) {
  if (code != 0) return;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    void* object = arguments[i].pointer == &world_.cell(i) ? world_.cell(i) : nullptr;
    if (object == nullptr) continue;
    switch (function.parameters[i].kind) {
      case Kind::BitmapResult:
        adoptOne(world_.bitmaps, object, KX_deleteBitmap);
        break;
      case Kind::ScreenResult:
        adoptOne(world_.screens, object, KX_deleteScreen);
        break;
      case Kind::DeviceResult:
        adoptOne(world_.devices, object, KX_delete3DDevice);
        break;
      case Kind::TextureResult:
        adoptOne(world_.sheets, object, KX_deleteTexture);
        break;
      case Kind::CameraResult:
        adoptOne(world_.cameras, object, KX_deleteCamera);
        break;
      case Kind::LandscapeResult:
        adoptOne(world_.landscapes, object, LS_deleteLandscape);
        break;
      default:
        mmgr_free(object);
        break;
    }
  }
  if (!arguments.empty()) world_.forgetDeleted(function, arguments[0].pointer);
}

void Session::deleteEverything() {
  kxtest::failAllocation(0);
  for (Landscape* landscape : world_.landscapes) require(LS_deleteLandscape(landscape) == 0);
  for (Camera* camera : world_.cameras) require(KX_deleteCamera(camera) == 0);
  for (Texture* texture : world_.sheets) require(KX_deleteTexture(texture) == 0);
  for (Device3D* device : world_.devices) {
    while (device->renderingDepth > 0 && KX_endRendering(device) == 0) {
    }
    require(KX_delete3DDevice(device) == 0);
  }
  for (Screen* screen : world_.screens) require(KX_deleteScreen(screen) == 0);
  for (Bitmap* bitmap : world_.bitmaps) require(KX_deleteBitmap(bitmap) == 0);
  world_.devices.clear();
  world_.screens.clear();
}

/// A blit's description from its arguments' names.
std::optional<kxtest::BlitCall> blitCall(const Export& function, const std::vector<Argument>& arguments) {
  if (!function.name.starts_with("KX_bltCopy") && !function.name.starts_with("KX_bltStretch")) return {};
  kxtest::BlitCall call;
  const auto has = [&](const char* part) { return function.name.find(part) != std::string_view::npos; };
  const auto at = [&](std::string_view name) { return function.find(name); };
  const auto number = [&](std::string_view name, std::int32_t& value) {
    if (at(name) >= 0) value = arguments[static_cast<std::size_t>(at(name))].number;
  };
  const auto bitmap = [&](std::string_view name, Bitmap*& value) {
    if (at(name) >= 0) value = static_cast<Bitmap*>(arguments[static_cast<std::size_t>(at(name))].pointer);
  };
  using kxtest::Depth;
  using kxtest::Rule;
  call.stretch = has("Stretch");
  call.rule = has("Alphamap")           ? Rule::Alphamap
              : has("TransparentAlpha") ? Rule::TransparentAlpha
              : has("Transparent")      ? Rule::Transparent
              : has("Alpha")            ? Rule::Alpha
                                        : Rule::Copy;
  call.depth = has("ZMap") ? Depth::ZMap : has("ZBuffer") ? Depth::ZBuffer : Depth::None;
  bitmap("dst", call.dst);
  bitmap("src", call.src);
  bitmap("zbuffer", call.zbuffer);
  bitmap("alphamap", call.alphamap);
  bitmap("zmap", call.zmap);
  number("dx", call.dx);
  number("dy", call.dy);
  number("sx", call.sx);
  number("sy", call.sy);
  number("w", call.dw);
  number("h", call.dh);
  number("dw", call.dw);
  number("dh", call.dh);
  number("sw", call.sw);
  number("sh", call.sh);
  number("alpha", call.alpha);
  number("z", call.z);
  number("zoffset", call.zoffset);
  return call;
}

std::size_t blockBytes(const Bitmap* bitmap) {
  if (bitmap == nullptr) return 0;
  // A bitmap of an unknown format has no bytes, and any height.
  const std::size_t spare = (bitmap->flags & KX_BORROWED_PIXELS) == 0 ? 1 : 0;
  return static_cast<std::size_t>(bitmap->pitch) * (static_cast<std::size_t>(bitmap->height) + spare);
}

Session::Check::Check(const Export& function, const std::vector<Argument>& arguments) {
  std::optional<kxtest::BlitCall> call = blitCall(function, arguments);
  if (!call) return;
  const Bitmap* const bitmaps[] = {call->dst, call->src, call->zbuffer, call->alphamap, call->zmap};
  for (const Bitmap* bitmap : bitmaps)
    if (bitmap != nullptr && reinterpret_cast<std::uintptr_t>(bitmap) < 65536) return;
  if (call->dst == nullptr || call->src == nullptr) return;
  // Targets of their own, plain, of formats that exist. Where memory is shared the order of pixels would count.
  for (const Bitmap* bitmap : {call->src, call->zbuffer, call->alphamap, call->zmap})
    if (bitmap != nullptr && bitmap->pixels == call->dst->pixels) return;
  for (const Bitmap* bitmap : {call->src, call->alphamap, call->zmap})
    if (bitmap != nullptr && call->zbuffer != nullptr && bitmap->pixels == call->zbuffer->pixels) return;
  if ((call->dst->format & KX_STORAGE_MASK) != 0) return;
  if ((call->src->format & KX_STORAGE_MASK) != 0 && (call->src->format & KX_STORAGE_MASK) != KX_STORAGE_PACKED) return;
  const auto known = [](const Bitmap* bitmap) {
    return (bitmap->format & 15) == 0 || kxtest::wholeBytes(bitmap->format) != 0;
  };
  if (!known(call->dst) || !known(call->src)) return;
  if ((call->alphamap != nullptr && (call->alphamap->format & KX_STORAGE_MASK) != 0) ||
      (call->zmap != nullptr && (call->zmap->format & KX_STORAGE_MASK) != 0) ||
      (call->zbuffer != nullptr && (call->zbuffer->format & KX_STORAGE_MASK) != 0))
    return;
  pixels_.assign(call->dst->pixels, call->dst->pixels + blockBytes(call->dst));
  if (call->zbuffer != nullptr)
    depths_.assign(call->zbuffer->pixels, call->zbuffer->pixels + blockBytes(call->zbuffer));
  weightBytes_ = blockBytes(call->alphamap);
  heightBytes_ = blockBytes(call->zmap);
  blit_ = call;
}

void Session::Check::compare() {
  if (!blit_ || blit_->dw < 1 || blit_->dh < 1) return;
  std::vector<std::uint8_t> depths = depths_;
  kxtest::referenceBlit(*blit_, *blit_->dst, {pixels_.data(), pixels_.size(), depths.data(), depths.size()},
                        weightBytes_, heightBytes_);
  require(std::equal(pixels_.begin(), pixels_.end(), blit_->dst->pixels));
  if (blit_->zbuffer != nullptr) require(std::equal(depths.begin(), depths.end(), blit_->zbuffer->pixels));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > 4096) return 0;
  const std::size_t blocks = kxtest::liveBlocks();
  {
    ByteReader bytes(data, size);
    Session session(bytes);
    while (!bytes.empty()) session.step();
  }
  require(kxtest::liveBlocks() == blocks);
  return 0;
}
