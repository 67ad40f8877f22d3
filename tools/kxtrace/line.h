// A line of the log, made without memory from any heap: it must cost the traced program nothing but time.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace kxtrace {

/// Text of bounded length; what does not fit is cut.
class Line {
public:
  Line() { text_[0] = 0; }

  [[gnu::format(printf, 2, 3)]] void add(const char* format, ...);

  [[nodiscard]] const char* text() const { return text_; }
  [[nodiscard]] std::size_t length() const { return length_; }
  [[nodiscard]] bool empty() const { return length_ == 0; }

private:
  std::size_t length_ = 0;
  char text_[2000];
};

}  // namespace kxtrace
