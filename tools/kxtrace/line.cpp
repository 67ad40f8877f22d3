// Appending formatted text to a line of the log.
// SPDX-License-Identifier: MIT
#include "line.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace kxtrace {

void Line::add(const char* format, ...) {  // NOLINT(cert-dcl50-cpp)
  std::va_list arguments;
  va_start(arguments, format);
  const int wanted = std::vsnprintf(text_ + length_, sizeof text_ - length_, format, arguments);
  va_end(arguments);
  if (wanted > 0) length_ = std::min(length_ + static_cast<std::size_t>(wanted), sizeof text_ - 1);
}

}  // namespace kxtrace
