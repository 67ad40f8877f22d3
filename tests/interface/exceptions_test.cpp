// The one exception that leaves the shared library: caught by its class in a program with a runtime of its own.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "kxgraphic/exceptions.hpp"
#include "kxgraphic/frame.h"
#include "support/scratch_folder.h"

namespace {

class ShutLog : public testing::Test {
protected:
  ShutLog() { std::filesystem::create_directory("ERRORLOG.TXT"); }

private:
  kxtest::ScratchFolder folder_;
};

/// A frame with something to clean up between the library and the handler.
void reportFromAFrame(std::uint32_t code, bool& left) {
  struct Guard {
    bool& left;
    ~Guard() { left = true; }
  } const guard{left};
  KX_reportError(code, 265, "array.h");
}

TEST_F(ShutLog, LeavesAreCaughtByTheirClassesOutsideTheLibrary) {
  for (int round = 0; round < 2; ++round) {
    bool left = false;
    EXPECT_THROW(reportFromAFrame(0x000A, left), KX_IndexOutOfBound_Exception);
    EXPECT_TRUE(left);
    EXPECT_THROW(reportFromAFrame(0x000A, left), KX_GeneralException);
    EXPECT_THROW(reportFromAFrame(0x4001, left), KX_ScreenException);
    try {
      reportFromAFrame(0x2005, left);
      FAIL() << "nothing thrown";
    } catch (const KX_GeneralException&) {
      FAIL() << "the wrong group";
    } catch (const KX_Exception& fault) {
      EXPECT_EQ(0x2005u, fault.code);
      EXPECT_STREQ(
          "Koordinaten au\xDF"
          "erhalb des g\xFCltigen Bereichs",
          fault.text);
      EXPECT_STREQ("Graphik-Fehler", fault.groupText);
    }
  }
}

}  // namespace
