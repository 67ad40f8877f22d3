// From a result code to its exception class.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "kxgraphic/exceptions.hpp"

namespace kx {

/// One leaf of the exception tree.
struct FaultClass {
  KX_Exception fault;     ///< what an object of the class holds
  void (*throwObject)();  ///< throws an object of the class
};

/// The class that a code names, or null.
const FaultClass* findFaultClass(std::uint32_t code);

}  // namespace kx
