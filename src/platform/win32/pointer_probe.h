// Pointer tests by the system: it tries the access.
// SPDX-License-Identifier: MIT
#pragma once

namespace kx::platform {

bool isReadable(const void* p);
bool isWritable(const void* p);

}  // namespace kx::platform
