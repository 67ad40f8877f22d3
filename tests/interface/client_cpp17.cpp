// The C program again as C++17, with the header of the exceptions.
// SPDX-License-Identifier: MIT
#include <kxgraphic/exceptions.hpp>

#include "client.c"  // NOLINT(bugprone-suspicious-include)

static_assert(__cplusplus == 201703L, "the public headers are for C++17");
// NOLINTNEXTLINE(bugprone-throw-keyword-missing)
static_assert(KX_OutOfMemory_Exception().code == KX_ERROR_OutOfMemory, "both lists of codes agree");
