// What programs do alike: numbers on the command line, and errors that end in a message and an exit code.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

namespace demo {

/// Exit codes; those for pictures stand in image.h.
constexpr int exitUsage = 2;
constexpr int exitNoDisplay = 7;

/// The number that follows an option: whole, from `least` on. Anything else is an Error that tells so.
int numberOf(const std::string& option, const std::string& text, int least);

/// Runs a program. What it throws is printed with the program's name; an Error brings its exit code, all else is 1.
int guarded(const char* program, const std::function<int()>& run);

}  // namespace demo
