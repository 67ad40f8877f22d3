// The description for bindings.
// SPDX-License-Identifier: MIT
#include "common/answers.h"
#include "interface.h"

namespace kxinterface {

namespace {

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (const char character : text) {
    if (character == '"' || character == '\\') result += '\\';
    result += character;
  }
  return result + '"';
}

/// Writes `"name": [` one line for each item `]`.
template <typename Items, typename Write>
void writeList(std::ostream& out, const char* name, const Items& items, Write&& write) {
  out << ",\n  " << quoted(name) << ": [";
  const char* separator = "\n";
  for (const auto& item : items) {
    out << separator << "    {";
    write(item);
    out << "}";
    separator = ",\n";
  }
  out << "\n  ]";
}

const char* answerName(const Function& function) {
  switch (kxtools::answerOf(function.name, function.result)) {
    case kxtools::Answer::Code:
      return "code";
    case kxtools::Answer::Flag:
      return "flag";
    default:
      return "value";
  }
}

void writeFunction(std::ostream& out, const Function& function) {
  out << "\"name\": " << quoted(function.name) << ", \"decorated\": " << quoted(function.decorated())
      << ", \"result\": " << quoted(function.result) << ", \"answer\": " << quoted(answerName(function));
  if (function.state == Function::State::Reserved) {
    out << ", \"state\": \"reserved\"";
    return;
  }
  if (function.state == Function::State::Placeholder) out << ", \"state\": \"placeholder\"";
  out << ", \"arguments\": [";
  const char* separator = "";
  for (const Parameter& parameter : function.parameters) {
    out << separator << "{\"name\": " << quoted(parameter.name) << ", \"type\": " << quoted(parameter.type) << "}";
    separator = ", ";
  }
  out << "]";
}

void writeRecord(std::ostream& out, const Record& record) {
  out << "\"name\": " << quoted(record.name) << ", \"size32\": " << record.size32 << ", \"size64\": " << record.size64
      << ", \"fields\": [";
  const char* separator = "\n";
  for (const Field& field : record.fields) {
    out << separator << "      {\"name\": " << quoted(field.name) << ", \"type\": " << quoted(field.type)
        << ", \"count\": " << field.count << ", \"offset32\": " << field.offset32
        << ", \"offset64\": " << field.offset64 << "}";
    separator = ",\n";
  }
  out << "\n    ]";
}

}  // namespace

void writeJson(std::ostream& out) {
  out << "{\n  \"library\": \"kxgraphic\",\n  \"version\": " << quoted(KXGRAPHIC_VERSION)
      << ",\n  \"about\": \"Made by kxinterface from include/kxgraphic/exports. Functions are stdcall on 32-bit "
         "Windows, "
         "where the decorated name is exported, and of the platform's C convention under the plain name elsewhere. "
         "Offsets and sizes: 32 where pointers take 4 bytes, 64 where they take 8. Answers: code is 0 or the code of "
         "an "
         "error, flag is 0 for a failure, value is neither.\"";
  writeList(out, "constants", constants(), [&](const Constant& constant) {
    out << "\"name\": " << quoted(constant.name) << ", \"value\": " << constant.value;
  });
  writeList(out, "errors", faults(), [&](const Fault& fault) {
    out << "\"code\": " << fault.code << ", \"name\": " << quoted(fault.name) << ", \"group\": " << quoted(fault.group)
        << ", \"german\": " << quoted(fault.german) << ", \"english\": " << quoted(fault.english);
  });
  writeList(out, "records", records(), [&](const Record& record) { writeRecord(out, record); });
  writeList(out, "methodTables", methodTables(), [&](const MethodTable& table) {
    out << "\"name\": " << quoted(table.name) << ", \"slots\": [";
    const char* separator = "";
    for (const std::string& slot : table.slots) {
      out << separator << quoted(slot);
      separator = ", ";
    }
    out << "]";
  });
  writeList(out, "functions", functions(), [&](const Function& function) { writeFunction(out, function); });
  writeList(out, "tables", tables(), [&](const Table& table) {
    out << "\"name\": " << quoted(table.name) << ", \"type\": " << quoted(table.type)
        << ", \"dimensions\": " << quoted(table.dimensions) << ", \"bytes\": " << table.bytes;
  });
  out << "\n}\n";
}

}  // namespace kxinterface
