// What the system's loader finds in the loaded library.
// SPDX-License-Identifier: MIT
#pragma once

namespace kxtest {

/// The address of the exported function `name`, or null.
void* exportedSymbol(const char* name, unsigned argumentBytes);

/// The address of the function `name` of a method table under the text that users of drivers look up, or null:
/// "_KX_lock" or, where symbols carry the bytes of the arguments, "_KX_lock@4".
void* driverSymbol(const char* name, unsigned argumentBytes);

}  // namespace kxtest
