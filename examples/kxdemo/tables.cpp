// Method tables: bitmaps whose functions are the program's own, seen through what the library calls.
// SPDX-License-Identifier: MIT
#include <array>
#include <cmath>
#include <cstdio>

#include "art.h"
#include "scene.h"
#include "text.h"

namespace demo {

namespace {

/// Calls that reached the program's own slots since the scene began.
struct Seen {
  unsigned locks, unlocks, openLocks, mostOpen;
};
Seen seen;

std::uint32_t KX_CALL countedLock(Bitmap* bitmap) {
  ++seen.locks;
  seen.mostOpen = std::max(seen.mostOpen, ++seen.openLocks);
  return KX_lock(bitmap);
}

std::uint32_t KX_CALL countedUnlock(Bitmap* bitmap) {
  ++seen.unlocks;
  --seen.openLocks;
  return KX_unlock(bitmap);
}

/// The library exports its functions under the names of a driver with the prefix KX, too.
constexpr const char* ownLibrary = KXDEMO_LIBRARY;

/// A bitmap of such a table refuses to be drawn on.
std::uint32_t KX_CALL refusedLock(Bitmap*) { return 0x2001; }

class Tables final : public Scene {
public:
  explicit Tables(const Material& material)
      : driven_(filledBy(ownLibrary)),
        counted_(*bitmapMethods()),
        refused_(*bitmapMethods()),
        picture_(material.covering(200, 150)),
        ball_(makeBall(48, material.format, {250, 200, 40})) {
    counted_.lock = countedLock;
    counted_.unlock = countedUnlock;
    refused_.lock = refusedLock;
    fields_[0] = field(material.format, driven_.version != 0 ? &driven_ : bitmapMethods());
    fields_[1] = field(material.format, &counted_);
    fields_[2] = field(material.format, &refused_);
    seen = {};
  }

  void draw(Bitmap* target, const Frame& frame) override {
    KX_CHECK(KX_fillRect(target, 0, 0, frameWidth, frameHeight, colour(target, 24, 27, 34)));
    static constexpr std::array<const char*, 3> captions{
        "A table filled by a driver: the library\nas one, with prefix \"KX\"",
        "lock and unlock of the program's own\ncounted, then passed on", "A lock that refuses\nnothing is drawn"};
    std::array<std::uint32_t, 3> codes{};
    for (std::size_t i = 0; i < fields_.size(); ++i) {
      codes[i] = paint(fields_[i].get(), frame.seconds);
      const int x = 10 + static_cast<int>(i) * 210;
      Bitmap shown = *fields_[i];
      shown.methods = bitmapMethods();
      KX_CHECK(KX_bltCopy(target, x, headHeight + 8, &shown, 0, 0, 200, 150));
      drawText(target, x, headHeight + 164, captions[i], colour(target, 205, 212, 224));
      char text[32];
      static_cast<void>(std::snprintf(text, sizeof text, "result code 0x%04X", codes[i]));
      drawText(target, x, headHeight + 188, text, colour(target, 255, 214, 110));
    }
    char text[96];
    static_cast<void>(std::snprintf(text, sizeof text, "%u locks and %u unlocks counted,\nat most %u open at a time.",
                                    seen.locks, seen.unlocks, seen.mostOpen));
    drawText(target, 10, headHeight + 214, text, colour(target, 255, 255, 255), 2);
    drawText(target, 10, headHeight + 272,
             "Every bitmap, screen and 3D device carries the table\n"
             "it was made with, and the library reaches it through\n"
             "that table only. A driver is a library with functions\n"
             "of the same names behind a prefix; a program may also\n"
             "put functions of its own into a table, as here.",
             colour(target, 205, 212, 224), 2);
    drawText(target, 10, headHeight + 384,
             "KX_getBitmapInterface and KX_get3DDeviceInterface fill tables with the library's functions and a "
             "driver's over\n"
             "them, KX_getScreenInterface with a driver's only; KX_getDriverTechnology tells whose they are.\n"
             "A fault is an object of its class, thrown by KX_reportError when no log can be written.",
             colour(target, 255, 214, 110));
  }

private:
  /// An empty table when there is no such driver.
  static BitmapMethods filledBy(const char* file) {
    BitmapMethods table{};
    if (KX_getBitmapInterface(&table, file, "KX", 1) == 0) table.version = 0;
    return table;
  }

  static Image field(std::uint32_t format, BitmapMethods* methods) {
    Bitmap* bitmap = nullptr;
    KX_CHECK(KX_createBitmap(&bitmap, 200, 150, format, 0, 0, methods));
    Image image(bitmap);
    Bitmap plain = *bitmap;
    plain.methods = bitmapMethods();
    KX_CHECK(KX_fillRect(&plain, 0, 0, 200, 150, colour(bitmap, 40, 46, 58)));
    return image;
  }

  /// Draws through the field's own table; the first code that is not 0.
  std::uint32_t paint(Bitmap* target, double t) const {
    const int x = static_cast<int>(76 + 75 * std::sin(t * 1.3));
    const int y = static_cast<int>(51 + 50 * std::sin(t * 1.9));
    for (const std::uint32_t code : {
             KX_bltCopy(target, 0, 0, picture_.get(), 0, 0, 200, 150),
             KX_fillRectAlpha(target, 20, 20, 160, 110, colour(target, 20, 40, 90), 128),
             KX_drawLine(target, 0, 149, 199, 0, colour(target, 255, 255, 255)),
             KX_bltCopyTransparent(target, x, y, ball_.get(), 0, 0, 48, 48),
         })
      if (code != 0) return code;
    return 0;
  }

  BitmapMethods driven_;
  BitmapMethods counted_;
  BitmapMethods refused_;
  Image picture_;
  Image ball_;
  std::array<Image, 3> fields_;
};

}  // namespace

std::unique_ptr<Scene> makeTables(const Material& material) { return std::make_unique<Tables>(material); }

}  // namespace demo
