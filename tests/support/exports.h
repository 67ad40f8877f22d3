// The exported functions as data, made from the one list: names, the names and kinds of their arguments, and a way to
// call each with arguments chosen at run time.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace kxtest {

/// What an argument is. Data: a pointer to numbers or bytes.
enum class Kind : std::uint8_t {
  Signed,
  Unsigned,
  Byte,
  Real,
  Data,
  Bitmap,
  BitmapResult,
  BitmapTable,
  Screen,
  ScreenResult,
  ScreenTable,
  Device,
  DeviceResult,
  DeviceTable,
  Texture,
  TextureResult,
  Camera,
  CameraResult,
  Landscape,
  LandscapeResult,
  VideoMode,
  VideoModeResult,
  TextureList,
  TextureListResult,
};

constexpr bool isNumber(Kind kind) { return kind <= Kind::Real; }

struct Parameter {
  std::string_view name;
  Kind kind;
  std::uint8_t pointeeBytes;  ///< size of what a pointer points to; 0 for void
};

union Argument {
  std::int32_t number;
  std::uint32_t word;
  std::uint8_t byte;
  float real;
  void* pointer;
};

struct Export {
  std::string_view name;
  std::vector<Parameter> parameters;
  bool placeholder;  ///< answers 6 whatever its arguments are
  void (*function)();
  std::uint32_t (*invoke)(void (*function)(), const Argument* arguments);

  std::uint32_t operator()(const Argument* arguments) const { return invoke(function, arguments); }

  /// Index of a parameter, or -1.
  [[nodiscard]] int find(std::string_view parameter) const;
};

std::span<const Export> allExports();

}  // namespace kxtest
