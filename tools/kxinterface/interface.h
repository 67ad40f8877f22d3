// The interface as data, read from the lists in include/kxgraphic/exports.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "signature.h"

namespace kxinterface {

/// An exported function. Placeholders answer 6; so do reserved ones, whose parameters are not public.
struct Function {
  enum class State { Designed, Placeholder, Reserved };

  std::string name;
  std::string result;
  std::vector<Parameter> parameters;
  State state;
  bool isSlot;  ///< of a method table

  /// "_KX_lock@4": every argument takes four bytes of the stack.
  [[nodiscard]] std::string decorated() const { return "_" + name + "@" + std::to_string(4 * parameters.size()); }
};

/// An exported table of data.
struct Table {
  const char* name;
  const char* type;
  const char* dimensions;  ///< "[256][32]"
  std::size_t bytes;
};

/// `offset` is this build's; the others are those of the list.
struct Field {
  const char* type;
  const char* name;
  unsigned count;
  std::size_t offset, offset32, offset64;
};

struct Record {
  const char* name;
  std::size_t size, size32, size64;
  std::vector<Field> fields;
};

struct MethodTable {
  const char* name;
  std::size_t size;
  std::vector<std::string> slots;
};

struct Fault {
  std::uint32_t code;
  const char *name, *group, *german, *english;
};

struct Constant {
  const char* name;
  std::uint32_t value;
};

std::vector<Function> functions();
std::vector<Table> tables();
std::vector<Record> records();
std::vector<MethodTable> methodTables();
std::vector<Fault> faults();
std::vector<Constant> constants();

/// The description for bindings, the same from every build.
void writeJson(std::ostream& out);

/// What this platform's programs were built against: exported names and layouts.
void writeSnapshot(std::ostream& out);

}  // namespace kxinterface
