// Bitmaps that delete themselves, results that throw, pictures from and to files.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include <kxgraphic/kxgraphic.h>

namespace demo {

/// A call of the library that returned a code, or a picture that cannot be used.
class Error : public std::runtime_error {
public:
  Error(int exitCode, const std::string& text) : std::runtime_error(text), exitCode_(exitCode) {}

  [[nodiscard]] int exitCode() const { return exitCode_; }

private:
  int exitCode_;
};

/// Exit code for a file that cannot be written.
constexpr int exitNotWritten = 6;

/// Throws when a result code is not 0; `call` is the text of the call.
void check(std::uint32_t code, const char* call);
#define KX_CHECK(call) ::demo::check((call), #call)

struct BitmapDelete {
  void operator()(Bitmap* bitmap) const { KX_deleteBitmap(bitmap); }
};
using Image = std::unique_ptr<Bitmap, BitmapDelete>;

/// The library's own bitmap method table.
BitmapMethods* bitmapMethods();

/// A new bitmap; its contents are 0.
Image makeImage(int width, int height, std::uint32_t format);

/// A copy in another format (and storage): a blit converts.
Image converted(const Image& source, std::uint32_t format);

/// A picture of a file as a 24-bit bitmap, at most 4096 pixels wide and high.
Image loadPicture(const std::string& file);

/// The same of a file's bytes; the name is for messages.
Image decodePicture(std::span<const std::uint8_t> bytes, const std::string& name);

/// The pixels as red, green, blue, without gaps.
std::vector<std::uint8_t> rgbOf(const Image& image);

/// Writes a bitmap of any format as PNG.
void savePicture(const Image& image, const std::string& file);

/// A colour of three channels, 0 to 255 each.
struct Rgb {
  unsigned red, green, blue;
};

/// A colour in the bitmap's own format.
std::uint32_t colour(const Bitmap* bitmap, unsigned red, unsigned green, unsigned blue);

}  // namespace demo
