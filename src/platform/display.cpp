// Which display is in use.
// SPDX-License-Identifier: MIT
#include "platform/display.h"

namespace kx::platform {

namespace {
Display* replaced = nullptr;
}

Display& display() { return replaced != nullptr ? *replaced : systemDisplay(); }

void replaceDisplay(Display* replacement) { replaced = replacement; }

}  // namespace kx::platform
