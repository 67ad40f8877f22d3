// What kxstartup needs of the system.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>

namespace kxbench {

/// Loads what every program with a window has loaded before.
void loadSystem();

/// Null when it cannot be loaded; says why.
void* openLibrary(const char* file);

/// The exported function `name`, whose arguments take that many bytes on a stack of words.
void* findFunction(void* library, const char* name, unsigned argumentBytes);

/// Pages handed to this process so far without reading them from a disk; 0 where that cannot be told.
long pagesSoFar();

/// Runs a command and reads what it prints.
std::FILE* readCommand(const char* command);
void closeCommand(std::FILE* output);

}  // namespace kxbench
