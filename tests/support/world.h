// One of everything that an exported function may ask for, and the usual value of each argument by its name: what tests
// that are made from the list of exports start from. All memory is the test heap's or lies between guard pages.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

#include "kxgraphic/kxgraphic.h"
#include "support/exports.h"
#include "support/guard_pages.h"
#include "support/scripted_display.h"

namespace kxtest {

/// Of what kind the bitmaps are that functions draw on and from.
struct WorldStyle {
  std::uint32_t target = KX_FORMAT_565;  ///< format words
  std::uint32_t source = KX_FORMAT_565;
};

class World {
public:
  /// Bytes of a data argument whose size does not follow from its name.
  static constexpr std::size_t dataBytes = 4096;
  static constexpr std::int32_t listedTextures = 8;

  explicit World(WorldStyle style = {});
  ~World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  /// The argument of a call that succeeds.
  Argument usual(const Export& function, std::size_t parameter);
  std::vector<Argument> usualArguments(const Export& function);

  /// True when what the arguments say about the size of the caller's memory is so, or the call is refused: the one
  /// thing that the library cannot know.
  bool memorySuffices(const Export& function, const std::vector<Argument>& arguments) const;

  /// To be told of every call that succeeded with `object` as its first argument.
  void forgetDeleted(const Export& function, const void* object);

  /// False where the pointers are documented as not tested.
  static bool testsPointer(const Export& function);

  /// The memory of a data argument, at most its guard page away from the end of what the function may touch.
  GuardedBlock& data(const Export& function, const Parameter& parameter);

  /// Any result's place; its pointer is null before a call.
  void*& cell(std::size_t parameter) { return cells_[parameter]; }

  ScriptedDisplay display;
  BitmapMethods bitmapMethods, otherBitmapMethods;
  ScreenMethods screenMethods, otherScreenMethods;
  DeviceMethods deviceMethods, otherDeviceMethods;
  VideoMode mode;
  std::array<TextureRef, listedTextures> textures;

  std::vector<Bitmap*> bitmaps;  ///< target, source, depths, weights, heights, pattern, canvas; more may be added
  std::vector<Screen*> screens;
  std::vector<Device3D*> devices;  ///< on a bitmap, on a screen
  std::vector<Texture*> sheets;
  std::vector<Camera*> cameras;
  std::vector<Landscape*> landscapes;

  /// A window handle of the scripted display.
  void* window() { return &windowObject_; }

private:
  Bitmap* makeBitmap(std::uint32_t format, std::int32_t width, std::int32_t height);
  void makeDevices();
  void makeLandscape();
  void* usualPointer(const Export& function, std::size_t index);
  void fillUsual(const Parameter& parameter, GuardedBlock& block);

  std::size_t mark_;
  std::uint32_t windowObject_ = 0, textureObject_ = 0;
  Bitmap sourceRecord_{};
  std::vector<GuardedBlock> recordBlocks_;
  void* savedLandscape_ = nullptr;
  std::uint32_t savedBytes_ = 0;
  std::array<void*, 24> cells_{};
  std::map<std::pair<std::string_view, std::size_t>, GuardedBlock> data_;
};

}  // namespace kxtest
