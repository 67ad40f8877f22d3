// kxgraphic: a thin layer for C++20 over the C interface: owners of the library's objects, result codes as
// std::error_code, pixel rows and blocks as std::span, formats as an enumeration. Everything is inline and has the size
// and the cost of what it stands for; nothing is wrapped that can be called as it is. Owners turn into the plain
// handles by themselves:
//
//   kx::Bitmap canvas;
//   kx::check(canvas.create(320, 240, kx::Format::rgb565));
//   kx::check(KX_fillRect(canvas, 0, 0, 320, 40, kx::colour(canvas, 90, 140, 255)));
//
// Functions here return std::error_code where a C function returns its code. check() throws what is not 0; programs
// without exceptions look at the code themselves. Link the memory manager too (library mmgr) where a Landscape or a
// Block is used. SPDX-License-Identifier: MIT
#ifndef KXGRAPHIC_KXGRAPHIC_HPP
#define KXGRAPHIC_KXGRAPHIC_HPP

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <system_error>
#include <type_traits>
#include <utility>

#include "error_text.h"
#include "errors.h"
#include "kxgraphic.h"
#include "mmgr.h"

namespace kx {

/// A format word: one of the six formats, and `packed` or not.
enum class Format : std::uint32_t {
  mono = KX_FORMAT_MONO,        ///< 1 bit
  grey = KX_FORMAT_GREY,        ///< 8 bits, an intensity
  palette = KX_FORMAT_PALETTE,  ///< 8 bits, an index
  rgb555 = KX_FORMAT_555,       ///< 16 bits, 5 for each channel
  rgb565 = KX_FORMAT_565,       ///< 16 bits, 6 for green
  bgr888 = KX_FORMAT_888,       ///< 24 bits
  packed = KX_STORAGE_PACKED    ///< for Format::rgb565 | Format::packed
};

/// A format and `packed`.

constexpr Format operator|(Format a, Format b) noexcept {
  return static_cast<Format>(static_cast<std::uint32_t>(a) | static_cast<std::uint32_t>(b));
}

/// Whether a format word says packed storage.
constexpr bool isPacked(Format format) noexcept {
  return (static_cast<std::uint32_t>(format) & KX_STORAGE_MASK) == KX_STORAGE_PACKED;
}

/// A pixel of Format::bgr888 and an entry of a palette, as they lie in memory.
struct Bgr {
  std::uint8_t blue;                                         ///< 0 to 255
  std::uint8_t green;                                        ///< 0 to 255
  std::uint8_t red;                                          ///< 0 to 255
  friend bool operator==(const Bgr&, const Bgr&) = default;  ///< all three
};
static_assert(sizeof(Bgr) == 3);

/// The category of result codes. Messages are the library's own, German and in UTF-8; kxErrorText has English ones.
/// Codes with a counterpart in the standard library compare with it too: `failure == std::errc::not_enough_memory`.
inline const std::error_category& category() noexcept {
  class Category final : public std::error_category {
  public:
    [[nodiscard]] const char* name() const noexcept override { return "kxgraphic"; }
    [[nodiscard]] std::string message(int code) const override {
      return kxErrorTextGerman(static_cast<std::uint32_t>(code));
    }
    [[nodiscard]] std::error_condition default_error_condition(int code) const noexcept override {
      switch (code) {
        case KX_ERROR_OutOfMemory:
          return std::errc::not_enough_memory;
        case KX_ERROR_FunctionNotSupported:
          return std::errc::function_not_supported;
        case KX_ERROR_IllegalParameter:
          return std::errc::invalid_argument;
        default:
          return {code, *this};
      }
    }
  };
  static const Category instance;
  return instance;
}

/// A result code of the C interface. It compares with the constants of errors.h: `failure == KX_ERROR_OutOfMemory`.
[[nodiscard]] inline std::error_code error(std::uint32_t code) noexcept { return {static_cast<int>(code), category()}; }

#ifdef __cpp_exceptions
/// Throws std::system_error for a code other than 0. Its what() begins with the class name of the code.
inline void check(std::error_code failure) {
  if (!failure) return;
  if (failure.category() != category()) throw std::system_error(failure);
  throw std::system_error(failure, kxErrorName(static_cast<std::uint32_t>(failure.value())));
}
/// The same for what a C function returned: kx::check(KX_fillRect(canvas, 0, 0, 32, 32, 0)).
inline void check(std::uint32_t code) {
  if (code != 0) check(error(code));
}
#endif

/// @cond
namespace detail {

/// One table of a type for the whole program, filled at its first use.
template <typename Table, typename Fill>
Table* filledOnce(Fill fill) noexcept {
  static Table table = [&] {
    Table filled;
    fill(&filled);
    return filled;
  }();
  return &table;
}

// Objects are deleted through their own method tables, as a driver may have made them.
template <typename Object>
void deleteWith(std::uint32_t(KX_CALL* slot)(Object*), std::uint32_t(KX_CALL* own)(Object*), Object* object) noexcept {
  (slot != nullptr ? slot : own)(object);
}
inline void destroy(::Bitmap* object) noexcept { deleteWith(object->methods->deleteBitmap, KX_deleteBitmap, object); }
inline void destroy(::Screen* object) noexcept { deleteWith(object->methods->deleteScreen, KX_deleteScreen, object); }
inline void destroy(::Device3D* object) noexcept {
  deleteWith(object->methods->delete3DDevice, KX_delete3DDevice, object);
}
inline void destroy(::Texture* object) noexcept {
  deleteWith(object->device->methods->deleteTexture, KX_deleteTexture, object);
}
inline void destroy(::Camera* object) noexcept {
  deleteWith(object->device->methods->deleteCamera, KX_deleteCamera, object);
}
inline void destroy(::Landscape* object) noexcept {
  LS_deleteLandscape(object);  // which keeps the record's own block
  mmgr_free(object);
}

}  // namespace detail
/// @endcond

/// The library's own bitmap functions. The table lives as long as the program.
inline BitmapMethods* bitmapMethods() noexcept {
  return detail::filledOnce<BitmapMethods>([](auto* table) { KX_getBitmapInterface(table, nullptr, nullptr, 0); });
}
/// The library's own 3D functions, as bitmapMethods().
inline DeviceMethods* deviceMethods() noexcept {
  return detail::filledOnce<DeviceMethods>([](auto* table) { KX_get3DDeviceInterface(table, nullptr, nullptr, 0); });
}
/// A screen table with all functions null: those of the library are called by their names.
inline ScreenMethods* screenMethods() noexcept {
  return detail::filledOnce<ScreenMethods>([](auto* table) { KX_getScreenInterface(table, nullptr, nullptr); });
}

/// Owns one object of the library, or none, and deletes it. It is no larger than the handle, and moves.
template <typename Object>
class Owner {
public:
  Owner() noexcept = default;                                   ///< owns nothing
  explicit Owner(Object* object) noexcept : object_(object) {}  ///< takes an object over
  Owner(Owner&& other) noexcept : object_(other.release()) {}   ///< leaves `other` empty
  /// Leaves `other` empty; what was owned is deleted.
  Owner& operator=(Owner&& other) noexcept {
    if (this != &other) reset(other.release());
    return *this;
  }
  ~Owner() { reset(); }

  [[nodiscard]] Object* get() const noexcept { return object_; }  ///< the handle, or null
  operator Object*() const noexcept { return object_; }           ///< for C functions, and for `if (canvas)`
  Object* operator->() const noexcept { return object_; }         ///< the record's fields

  /// Gives the object away.
  [[nodiscard]] Object* release() noexcept { return std::exchange(object_, nullptr); }
  /// Deletes what was owned and takes another object over, or none.
  void reset(Object* object = nullptr) noexcept {
    if (Object* old = std::exchange(object_, object)) detail::destroy(old);
  }
  /// For C functions that make an object: KX_cloneBitmap(copy.put(), original, kx::bitmapMethods()). What was owned is
  /// deleted first.
  [[nodiscard]] Object** put() noexcept {
    reset();
    return &object_;
  }

private:
  Object* object_ = nullptr;
};

/// Owns a block of memory that the library gave away. It is a range, which turns into a std::span by itself.
template <typename Element>
class Block {
public:
  Block() noexcept = default;                                                    ///< owns nothing
  Block(Element* data, std::size_t size) noexcept : data_(data), size_(size) {}  ///< takes `size` elements over
  /// Leaves `other` empty.
  Block(Block&& other) noexcept : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)) {}
  /// Changes places with `other`.
  Block& operator=(Block&& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    return *this;
  }
  ~Block() {
    if (data_ != nullptr) mmgr_free(data_);
  }

  [[nodiscard]] std::span<Element> span() const noexcept { return {data_, size_}; }  ///< all elements
  [[nodiscard]] Element* data() const noexcept { return data_; }                     ///< the first, or null
  [[nodiscard]] std::size_t size() const noexcept { return size_; }                  ///< elements
  [[nodiscard]] bool empty() const noexcept { return size_ == 0; }                   ///< no elements
  [[nodiscard]] Element* begin() const noexcept { return data_; }                    ///< the first
  [[nodiscard]] Element* end() const noexcept { return data_ + size_; }              ///< behind the last

private:
  Element* data_ = nullptr;
  std::size_t size_ = 0;
};

/// An image. Its fields are those of the record: canvas->width.
class Bitmap : public Owner<::Bitmap> {
public:
  using Owner::Owner;

  /// KX_createBitmap through a method table, which must outlive the bitmap. What was owned is deleted first.
  [[nodiscard]] std::error_code create(std::int32_t width, std::int32_t height, Format format,
                                       BitmapMethods* methods = bitmapMethods()) noexcept {
    return error(methods->createBitmap(put(), width, height, static_cast<std::uint32_t>(format), 0, 0, methods));
  }
};

/// Format code and storage of a bitmap; creation flags are left out.
[[nodiscard]] inline Format formatOf(const ::Bitmap* bitmap) noexcept {
  return static_cast<Format>(bitmap->format & (KX_FORMAT_CODE_MASK | KX_STORAGE_MASK));
}

/// A pixel value from channels of 0 to 255, as KX_toRGB.
[[nodiscard]] inline std::uint32_t colour(Format format, unsigned red, unsigned green, unsigned blue) noexcept {
  return KX_toRGB(static_cast<std::uint32_t>(format), red, green, blue);
}
/// The same in the format of a bitmap.
[[nodiscard]] inline std::uint32_t colour(const ::Bitmap* bitmap, unsigned red, unsigned green,
                                          unsigned blue) noexcept {
  return KX_toRGB(bitmap->format, red, green, blue);
}

/// The palette of a bitmap of Format::palette. Who writes it tells the bitmap through KX_setPalette.
[[nodiscard]] inline std::span<Bgr> paletteOf(const ::Bitmap* bitmap) noexcept {
  return {reinterpret_cast<Bgr*>(bitmap->palette), bitmap->palette != nullptr ? std::size_t{256} : 0};
}

/// Holds a bitmap locked, through its own table, and shows its memory. Where the lock failed all spans are empty.
class Pixels {
public:
  /// Locks a bitmap, which must stay while this lives.
  explicit Pixels(::Bitmap* bitmap) noexcept : bitmap_(bitmap), code_(bitmap->methods->lock(bitmap)) {
    if (code_ == 0 && bitmap->pixels == nullptr) {
      bitmap->methods->unlock(bitmap);
      code_ = KX_ERROR_BitmapDestroyed;
    }
  }
  Pixels(const Pixels&) = delete;             ///< a lock has one owner
  Pixels& operator=(const Pixels&) = delete;  ///< a lock has one owner
  /// Unlocks it.
  ~Pixels() {
    if (code_ == 0) bitmap_->methods->unlock(bitmap_);
  }

  /// What the lock returned, or KX_ERROR_BitmapDestroyed for a bitmap without memory.
  [[nodiscard]] std::error_code failure() const noexcept { return error(code_); }

  /// Row y of a plain bitmap, 0 to height - 1, as std::uint8_t (Format::mono, grey, palette), std::uint16_t (rgb555,
  /// rgb565) or Bgr (bgr888); bytes fit every format.
  template <typename Pixel = std::uint8_t>
  [[nodiscard]] std::span<Pixel> row(std::int32_t y) const noexcept {
    if (code_ != 0) return {};
    assert(y >= 0 && y < bitmap_->height && (bitmap_->format & KX_STORAGE_MASK) == 0);
    const std::uint32_t bytesPerPixel = KX_getBytesPerPixel(bitmap_->format);  // 16.16
    assert(sizeof(Pixel) == 1 || sizeof(Pixel) << 16 == bytesPerPixel);
    const auto bits = static_cast<std::uint64_t>(bitmap_->width) * (bytesPerPixel >> 13);
    std::uint8_t* const first = bitmap_->pixels + static_cast<std::ptrdiff_t>(bitmap_->pitch) * y;
    return {reinterpret_cast<Pixel*>(first), static_cast<std::size_t>((bits + 7) / 8 / sizeof(Pixel))};
  }

  /// All rows with the gaps between them, or the packed rows.
  [[nodiscard]] std::span<std::uint8_t> bytes() const noexcept {
    std::uint32_t size = 0;
    if (code_ != 0 || KX_getBitmapSize(bitmap_, &size) != 0) return {};
    return {bitmap_->pixels, size};
  }

private:
  ::Bitmap* bitmap_;
  std::uint32_t code_;
};

/// What puts frames on the display. Modes are set with KX_setMode; screen->back is what to draw into.
class Screen : public Owner<::Screen> {
public:
  using Owner::Owner;

  /// KX_createScreen: a screen without a mode. What was owned is deleted first.
  [[nodiscard]] std::error_code create(ScreenMethods* methods = screenMethods()) noexcept {
    return error(KX_createScreen(put(), nullptr, 0, methods));
  }

  /// The display's modes of 16 and 24 bits.
  [[nodiscard]] std::error_code videoModes(Block<VideoMode>& modes) const noexcept {
    VideoMode* list = nullptr;
    std::int32_t count = 0;
    const std::uint32_t code = KX_getVideoModeList(get(), &list, &count);
    if (code == 0) modes = Block<VideoMode>(list, static_cast<std::size_t>(count));
    return error(code);
  }
};

/// A render target with its clip rectangle and, if asked for, a Z buffer.
class Device : public Owner<::Device3D> {
public:
  using Owner::Owner;

  /// A device that draws into a bitmap. What was owned is deleted first.
  [[nodiscard]] std::error_code create(::Bitmap* target, bool zBuffer = false,
                                       DeviceMethods* methods = deviceMethods()) noexcept {
    return error(methods->create3DDevice(put(), target, 0, 0, zBuffer, methods));
  }
  /// A device that draws into a screen's back buffer.
  [[nodiscard]] std::error_code create(::Screen* screen, bool zBuffer = false,
                                       DeviceMethods* methods = deviceMethods()) noexcept {
    return error(methods->create3DDevice_Screen(put(), screen, 0, 0, zBuffer, methods));
  }
};

/// KX_beginRendering, and KX_endRendering at the end of the scope.
class Rendering {
public:
  /// Begins.
  explicit Rendering(::Device3D* device) noexcept : device_(device), code_(device->methods->beginRendering(device)) {}
  Rendering(const Rendering&) = delete;             ///< a scope has one end
  Rendering& operator=(const Rendering&) = delete;  ///< a scope has one end
  /// Ends what was begun.
  ~Rendering() {
    if (code_ == 0) device_->methods->endRendering(device_);
  }
  /// What KX_beginRendering returned.
  [[nodiscard]] std::error_code failure() const noexcept { return error(code_); }

private:
  ::Device3D* device_;
  std::uint32_t code_;
};

/// A chain of mip levels. It must go before its device; texture->levels[0] is the full size.
class Texture : public Owner<::Texture> {
public:
  using Owner::Owner;

  /// KX_createTexture. The width is a power of two from 4 to 1024. What was owned is deleted first.
  [[nodiscard]] std::error_code create(::Device3D* device, std::int32_t width, std::int32_t height, Format format,
                                       std::int32_t levels = 1) noexcept {
    return error(
        device->methods->createTexture(put(), device, width, height, static_cast<std::uint32_t>(format), levels));
  }
};

/// A position, three angles and a projection. It must go before its device.
class Camera : public Owner<::Camera> {
public:
  using Owner::Owner;

  /// KX_createCamera. What was owned is deleted first.
  [[nodiscard]] std::error_code create(::Device3D* device) noexcept {
    return error(device->methods->createCamera(put(), device));
  }
};

/// A height-map terrain. It must go before its device.
class Landscape : public Owner<::Landscape> {
public:
  using Owner::Owner;

  /// LS_createLandscape; heights are not initialised. What was owned is deleted first.
  [[nodiscard]] std::error_code create(::Device3D* device, std::int32_t width, std::int32_t height,
                                       bool colourLight = false) noexcept {
    return error(LS_createLandscape(put(), device, width, height, colourLight));
  }

  /// The block for a file; `textures` names the handles in use.
  [[nodiscard]] std::error_code save(Block<std::byte>& block,
                                     std::span<const TextureRef> textures = {}) const noexcept {
    void* data = nullptr;
    std::uint32_t size = 0;
    const std::uint32_t code =
        LS_convertToData(get(), &data, &size, listOf(textures), static_cast<std::int32_t>(textures.size()));
    if (code == 0) block = Block<std::byte>(static_cast<std::byte*>(data), size);
    return error(code);
  }

  /// The textures that a block asks for; the caller fills in the handles.
  [[nodiscard]] static std::error_code texturesOf(std::span<const std::byte> block,
                                                  Block<TextureRef>& textures) noexcept {
    TextureRef* list = nullptr;
    std::int32_t count = 0;
    const std::uint32_t code =
        LS_getTextureListFromData(block.data(), static_cast<std::uint32_t>(block.size()), &list, &count);
    if (code == 0) textures = Block<TextureRef>(list, static_cast<std::size_t>(count));
    return error(code);
  }

  /// LS_createFromData; `textures` is the list of texturesOf() with its handles filled in.
  [[nodiscard]] std::error_code load(::Device3D* device, std::span<const std::byte> block,
                                     std::span<const TextureRef> textures = {}) noexcept {
    return error(LS_createFromData(put(), device, block.data(), static_cast<std::uint32_t>(block.size()),
                                   listOf(textures), static_cast<std::int32_t>(textures.size())));
  }

  /// The heights of one row, 0 to height - 1.
  [[nodiscard]] std::span<std::uint8_t> heights(std::int32_t y) const noexcept {
    const auto width = static_cast<std::size_t>(get()->width);
    return {get()->heightMap + width * static_cast<std::size_t>(y), width};
  }

private:
  /// An empty list must be readable too.
  static const TextureRef* listOf(std::span<const TextureRef> textures) noexcept {
    static constexpr TextureRef none{};
    return textures.empty() ? &none : textures.data();
  }
};

/// The CRC-32 of a block of less than 2 GB, as KX_calculateCRC.
template <typename Element, std::size_t Extent>
[[nodiscard]] std::uint32_t crc(std::span<Element, Extent> block) noexcept {
  return KX_calculateCRC(block.data(), static_cast<std::int32_t>(block.size_bytes()));
}

}  // namespace kx

/// @cond
// Lets the constants of errors.h stand for error codes.
template <>
struct std::is_error_code_enum<KxError> : std::true_type {};
/// @endcond

/// Makes `failure == KX_ERROR_OutOfMemory` work.
inline std::error_code make_error_code(KxError code) noexcept { return kx::error(static_cast<std::uint32_t>(code)); }

#endif
