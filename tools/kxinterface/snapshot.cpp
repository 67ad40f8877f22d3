// What programs were built against, a line for each thing.
// SPDX-License-Identifier: MIT
#include <algorithm>

#include "interface.h"

namespace kxinterface {

void writeSnapshot(std::ostream& out) {
  out << "# What programs are built against: docs/versioning.md. Made by ./run interface.\n";
  std::vector<std::string> exported;
  for (const Function& function : functions()) {
#ifdef _WIN32
    exported.push_back(function.decorated());
#else
    exported.push_back(function.name);
    if (function.isSlot) exported.push_back("_" + function.name);
#endif
  }
  for (const Table& table : tables()) exported.emplace_back(table.name);
  std::sort(exported.begin(), exported.end());
  for (const std::string& name : exported) out << "export " << name << "\n";
  for (const Table& table : tables()) out << "data " << table.name << " " << table.type << table.dimensions << "\n";

  for (const Record& record : records()) {
    out << "record " << record.name << " " << record.size << "\n";
    for (const Field& field : record.fields) {
      out << "  " << field.offset << " " << field.type << " " << field.name;
      if (field.count > 1) out << "[" << field.count << "]";
      out << "\n";
    }
  }
  for (const MethodTable& table : methodTables()) {
    out << "methods " << table.name << " " << table.size << "\n";
    std::size_t offset = 0;
    for (const std::string& slot : table.slots) out << "  " << (offset += sizeof(void*)) << " " << slot << "\n";
  }
}

}  // namespace kxinterface
