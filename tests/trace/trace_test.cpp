// The tracer as a driver: what it writes for which calls, and that calls come through it unchanged.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "kxgraphic/kxgraphic.h"

namespace {

void setVariable(const std::string& name, const std::string& value) {
#ifdef _WIN32
  _putenv((name + "=" + value).c_str());
#else
  setenv(name.c_str(), value.c_str(), 1);
#endif
}

/// A tracer of its own: a copy of the library under a new name, which reads its settings with its first call.
class Session {
public:
  explicit Session(std::initializer_list<std::pair<const char*, const char*>> settings) {
    static int number = 0;
    const std::string name = "./kxtrace_copy" + std::to_string(++number);
    // Not overwrite_existing, which fails in the standard library of mingw-w64.
    std::filesystem::remove(name + ".bin");
    std::filesystem::copy_file(KXTRACE_LIBRARY, name + ".bin");
    log_ = name + ".log";
    for (const char* variable : {"KXTRACE_ONLY", "KXTRACE_ENTER"}) setVariable(variable, "");
    setVariable("KXTRACE_FILE", log_);
    for (const auto& [variable, value] : settings) setVariable(variable, value);
    EXPECT_EQ(1, KX_getBitmapInterface(&methods, (name + ".bin").c_str(), "KX", 1));
    EXPECT_EQ(0u, methods.getDriverTechnology());
  }

  /// The lines, without their numbers and times, and addresses as "@".
  [[nodiscard]] std::vector<std::string> lines() const {
    std::ifstream file(log_);
    std::vector<std::string> result;
    for (std::string line; std::getline(file, line);) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      line = std::regex_replace(line, std::regex("^ +[0-9]+ +[0-9.]+ "), "");
      result.push_back(std::regex_replace(line, std::regex("0x[0-9a-f]{5,}"), "@"));
    }
    if (!result.empty()) result.erase(result.begin());
    return result;
  }

  BitmapMethods methods;

private:
  std::string log_;
};

using Lines = std::vector<std::string>;

/// A bitmap, a pixel in it and one outside, and its end.
void draw(BitmapMethods& methods) {
  Bitmap* bitmap = nullptr;
  std::uint32_t size = 0;
  ASSERT_EQ(0u, methods.createBitmap(&bitmap, 64, 20, KX_FORMAT_565 | KX_STORAGE_PACKED, 1, 2, &methods));
  EXPECT_EQ(0u, methods.getBitmapSize(bitmap, &size));
  EXPECT_EQ(0u, methods.fillRect(bitmap, 0, 0, 64, 20, 0xF800));
  EXPECT_EQ(0x2005u, methods.fillRect(bitmap, 60, 0, 8, 8, 0xF800));
  EXPECT_EQ(0xF800u, methods.getPixel(bitmap, 63, 19));
  EXPECT_EQ(0u, methods.deleteBitmap(bitmap));
  EXPECT_EQ(7u, methods.deleteBitmap(nullptr));
}

const char* const outside =
    "KX_fillRect(bitmap @ [64x20 format 6 packed], x 60, y 0, w 8, h 8, colour 0xF800) = "
    "0x2005 CoordinateOutOfRange";
const char* const created =
    "KX_createBitmap(result @, width 64, height 20, format 0x16, extra1 1, extra2 2, methods @) = 0, "
    "result: @ [64x20 format 6 packed]";
const char* const noBitmap = "KX_deleteBitmap(bitmap null) = 0x0007 IllegalParameter";

TEST(Trace, WritesEachCallOfTheProgram) {
  Session session({{"KXTRACE_ONLY", "program"}});
  draw(session.methods);
  EXPECT_EQ((Lines{"KX_getDriverTechnology() = 0", created,
                   "KX_getBitmapSize(bitmap @ [64x20 format 6 packed], size @) = 0, size: 155",
                   "KX_fillRect(bitmap @ [64x20 format 6 packed], x 0, y 0, w 64, h 20, colour 0xF800) = 0", outside,
                   "KX_getPixel(bitmap @ [64x20 format 6 packed], x 63, y 19) = 0xF800",
                   "KX_deleteBitmap(bitmap @ [64x20 format 6 packed]) = 0", noBitmap}),
            session.lines());
}

TEST(Trace, WritesFailuresOnly) {
  Session session({{"KXTRACE_ONLY", "failures"}});
  draw(session.methods);
  EXPECT_EQ((Lines{outside, noBitmap}), session.lines());
}

TEST(Trace, WritesChosenFunctions) {
  Session session({{"KXTRACE_ONLY", "failures, KX_delete*"}});
  draw(session.methods);
  EXPECT_EQ((Lines{noBitmap}), session.lines());

  // Those that the library calls itself stand above the call that made them, farther to the right.
  Session nested({{"KXTRACE_ONLY", "KX_setPixel,KX_lock,KX_unlock"}});
  Bitmap* bitmap = nullptr;
  ASSERT_EQ(0u, nested.methods.createBitmap(&bitmap, 8, 8, KX_FORMAT_GREY, 0, 0, &nested.methods));
  EXPECT_EQ(0u, KX_setPixel(bitmap, 1, 2, 3));
  EXPECT_EQ(0u, nested.methods.setPixel(bitmap, 1, 2, 3));
  const std::string lock = "KX_lock(bitmap @ [8x8 format 3]) = 0";
  const std::string unlock = "KX_unlock(bitmap @ [8x8 format 3 locked 1]) = 0";
  EXPECT_EQ(
      (Lines{lock, unlock, "  " + lock, "  " + unlock, "KX_setPixel(bitmap @ [8x8 format 3], x 1, y 2, colour 3) = 0"}),
      nested.lines());
  EXPECT_EQ(0u, KX_deleteBitmap(bitmap));
}

TEST(Trace, TellsNamesThatMeanNoFunction) {
  Session session({{"KXTRACE_ONLY", "failure,KX_delete*"}});
  draw(session.methods);
  EXPECT_EQ((Lines{"KXTRACE_ONLY: no function is called failure",
                   "KX_deleteBitmap(bitmap @ [64x20 format 6 packed]) = 0", noBitmap}),
            session.lines());
}

TEST(Trace, WritesCallsAsTheyBegin) {
  Session session({{"KXTRACE_ENTER", "1"}, {"KXTRACE_ONLY", "KX_deleteBitmap"}});
  draw(session.methods);
  const std::string call = "KX_deleteBitmap(bitmap @ [64x20 format 6 packed])";
  EXPECT_EQ((Lines{call, call + " = 0", "KX_deleteBitmap(bitmap null)", noBitmap}), session.lines());
}

}  // namespace
