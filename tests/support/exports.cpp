// SPDX-License-Identifier: MIT
#include "support/exports.h"

#include <type_traits>
#include <utility>

#include "kxgraphic/kxgraphic.h"

namespace kxtest {

namespace {

/// What a pointer to T is.
template <typename T>
constexpr Kind pointerKind = Kind::Data;
template <>
constexpr Kind pointerKind<::Bitmap> = Kind::Bitmap;
template <>
constexpr Kind pointerKind<::Bitmap*> = Kind::BitmapResult;
template <>
constexpr Kind pointerKind<BitmapMethods> = Kind::BitmapTable;
template <>
constexpr Kind pointerKind<::Screen> = Kind::Screen;
template <>
constexpr Kind pointerKind<::Screen*> = Kind::ScreenResult;
template <>
constexpr Kind pointerKind<ScreenMethods> = Kind::ScreenTable;
template <>
constexpr Kind pointerKind<Device3D> = Kind::Device;
template <>
constexpr Kind pointerKind<Device3D*> = Kind::DeviceResult;
template <>
constexpr Kind pointerKind<DeviceMethods> = Kind::DeviceTable;
template <>
constexpr Kind pointerKind<::Texture> = Kind::Texture;
template <>
constexpr Kind pointerKind<::Texture*> = Kind::TextureResult;
template <>
constexpr Kind pointerKind<::Camera> = Kind::Camera;
template <>
constexpr Kind pointerKind<::Camera*> = Kind::CameraResult;
template <>
constexpr Kind pointerKind<::Landscape> = Kind::Landscape;
template <>
constexpr Kind pointerKind<::Landscape*> = Kind::LandscapeResult;
template <>
constexpr Kind pointerKind<::VideoMode> = Kind::VideoMode;
template <>
constexpr Kind pointerKind<::VideoMode*> = Kind::VideoModeResult;
template <>
constexpr Kind pointerKind<TextureRef> = Kind::TextureList;
template <>
constexpr Kind pointerKind<TextureRef*> = Kind::TextureListResult;

template <typename T>
constexpr Kind kindOf() {
  if constexpr (std::is_pointer_v<T>) {
    return pointerKind<std::remove_const_t<std::remove_pointer_t<T>>>;
  } else if constexpr (std::is_same_v<T, float>) {
    return Kind::Real;
  } else if constexpr (sizeof(T) == 1) {
    return Kind::Byte;
  } else {
    return std::is_signed_v<T> ? Kind::Signed : Kind::Unsigned;
  }
}

template <typename T>
constexpr std::uint8_t pointeeBytes() {
  if constexpr (kindOf<T>() != Kind::Data) {
    return 0;
  } else {
    using Pointee = std::remove_pointer_t<T>;
    if constexpr (std::is_void_v<Pointee>) {
      return 0;
    } else {
      return sizeof(Pointee);
    }
  }
}

template <typename T>
T take(const Argument& argument) {
  if constexpr (std::is_pointer_v<T>)
    return static_cast<T>(argument.pointer);
  else if constexpr (std::is_same_v<T, float>)
    return argument.real;
  else if constexpr (sizeof(T) == 1)
    return static_cast<T>(argument.byte);
  else
    return static_cast<T>(argument.word);
}

template <typename Value, typename... Types>
struct Caller {
  using Function = Value(KX_CALL*)(Types...);

  static std::uint32_t invoke(void (*function)(), const Argument* arguments) {
    return call(reinterpret_cast<Function>(function), arguments, std::index_sequence_for<Types...>{});
  }

  template <std::size_t... index>
  static std::uint32_t call(Function function, [[maybe_unused]] const Argument* arguments,
                            std::index_sequence<index...>) {
    return static_cast<std::uint32_t>(function(take<Types>(arguments[index])...));
  }
};

/// The name of the n-th parameter of "(Type a, Type* b)": the last word before the comma or the closing parenthesis.
std::string_view parameterName(std::string_view list, std::size_t n) {
  for (; n > 0; --n) list.remove_prefix(list.find(',') + 1);
  list = list.substr(0, list.find_first_of(",)"));
  return list.substr(list.find_last_of(" *") + 1);
}

template <typename Value, typename... Types>
Export describe(std::string_view name, [[maybe_unused]] std::string_view list, bool placeholder,
                Value(KX_CALL* function)(Types...)) {
  Export item{name, {}, placeholder, reinterpret_cast<void (*)()>(function), &Caller<Value, Types...>::invoke};
  (item.parameters.push_back({parameterName(list, item.parameters.size()), kindOf<Types>(), pointeeBytes<Types>()}),
   ...);
  return item;
}

}  // namespace

int Export::find(std::string_view parameter) const {
  for (std::size_t i = 0; i < parameters.size(); ++i)
    if (parameters[i].name == parameter) return static_cast<int>(i);
  return -1;
}

std::span<const Export> allExports() {
  static const auto& list = *new std::vector<Export> {
#define KX_METHOD(slot, result, parameters) describe("KX_" #slot, #parameters, false, &KX_##slot),
#define KX_PLACEHOLDER(slot, result, parameters) describe("KX_" #slot, #parameters, true, &KX_##slot),
#define KX_UNDESIGNED(slot, result, parameters)
#define KX_FUNCTION(name, result, parameters) describe(#name, #parameters, false, &name),
#include "kxgraphic/exports/all.inc"
#undef KX_METHOD
#undef KX_PLACEHOLDER
#undef KX_UNDESIGNED
#undef KX_FUNCTION
  };
  return list;
}

}  // namespace kxtest
