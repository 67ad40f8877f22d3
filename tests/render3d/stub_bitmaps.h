// Bitmaps of a driver whose operations are logged and fail on request; otherwise they are the library's own.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "kxgraphic/kxgraphic.h"

namespace kxtest {

class StubBitmaps {
public:
  StubBitmaps();
  ~StubBitmaps();
  StubBitmaps(const StubBitmaps&) = delete;
  StubBitmaps& operator=(const StubBitmaps&) = delete;

  BitmapMethods methods;
  std::string log;  ///< one letter a call: c(reate), d(elete), f(ill), l(ock), u(nlock)

  /// The `countdown`-th call of the kind `letter` (1 is the next one) does nothing and returns `code`.
  void fail(char letter, int countdown, std::uint32_t code);

  /// Logs the call and tells the code to return, 0 to go on.
  std::uint32_t note(char letter);

  /// Arguments of the last calls.
  std::uint32_t createdFormat = 0, createdExtra1 = 0, createdExtra2 = 0;
  std::int32_t createdWidth = 0, createdHeight = 0;
  std::uint32_t filledColour = 0;
  std::int32_t filledRect[4] = {};

private:
  char failingLetter_ = 0;
  int untilFailure_ = 0;
  std::uint32_t failureCode_ = 0;
};

}  // namespace kxtest
