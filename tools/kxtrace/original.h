// The library that calls are passed on to, and what else is asked of the system.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace kxtrace {

/// The library's own function; null when the library or the function is not there. `argumentBytes` belong to the
/// exported text on Windows.
void* findOriginal(const char* name, unsigned argumentBytes);

/// The file of that library, for the log; "nothing" and why when none was found.
const char* originalFile();

unsigned processNumber();

/// Copies memory that may not be there; false when it is not.
bool peek(void* to, const void* from, std::size_t size);

}  // namespace kxtrace
