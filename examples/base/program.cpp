// SPDX-License-Identifier: MIT
#include "program.h"

#include <charconv>
#include <cstdio>

#include "image.h"

namespace demo {

int numberOf(const std::string& option, const std::string& text, int least) {
  int number = 0;
  const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (code != std::errc() || end != text.data() + text.size() || number < least)
    throw Error(exitUsage, option + " takes a whole number from " + std::to_string(least) + " on, not " + text);
  return number;
}

int guarded(const char* program, const std::function<int()>& run) try {
  return run();
} catch (const std::exception& error) {
  static_cast<void>(std::fprintf(stderr, "%s: %s\n", program, error.what()));
  const auto* known = dynamic_cast<const Error*>(&error);
  return known != nullptr ? known->exitCode() : 1;
}

}  // namespace demo
