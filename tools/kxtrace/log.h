// Where lines go, which calls are written, and what is told at the end.
//
//   KXTRACE_FILE     the log; "%p" in its name is the number of the process, "-" alone the error output; without it
//                    kxtrace.log in the current folder
//   KXTRACE_ONLY     which calls are written, separated by commas: "failures", "program" (without those that the
//                    library makes itself) and names, which may end in "*"
//   KXTRACE_ENTER    1: a line when a call begins too, so that the last one names the call that never returned
//   KXTRACE_LIBRARY  the library to pass calls on to
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "common/answers.h"
#include "line.h"

namespace kxtrace {

using kxtools::Answer;

/// An exported function; there is one record of each that was called.
struct Entry {
  const char* name;
  const char* parameters;  ///< their names, separated by ", "
  Answer answer;

  bool known = false;   ///< the rest is set
  bool chosen = false;  ///< by its name
  void* original = nullptr;
  std::uint32_t calls = 0, failures = 0, lastFailure = 0;
  Entry* next = nullptr;
};

/// Finds the original and settles whether the function's calls are written.
void prepare(Entry& entry, unsigned argumentBytes);

/// How many calls go on in this thread.
class CallDepth {
public:
  static unsigned now();
  static void set(unsigned depth);
};

/// True when a call is written.
bool writes(const Entry& entry, unsigned depth, bool failed);

/// True when a line is written as a call begins, too.
bool writesBegin();

/// Writes "number  milliseconds  text", the text indented by the depth.
void write(std::uint32_t number, unsigned depth, const Line& line);

/// The number of a call; also counts it.
std::uint32_t count(Entry& entry);
void countFailure(Entry& entry, std::uint32_t code);

}  // namespace kxtrace
