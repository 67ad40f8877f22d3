// What arguments look like in the log.
// SPDX-License-Identifier: MIT
#include "describe.h"

#include <string_view>

#include "kxgraphic/error_text.h"
#include "original.h"

namespace kxtrace {

namespace {

/// The record behind a handle, when it can be read.
template <typename Record>
bool read(Record& record, const Record* handle) {
  return handle != nullptr && peek(&record, handle, sizeof record);
}

constexpr std::uint32_t recordVersion = 0x10000;

}  // namespace

void describe(Line& line, std::int32_t value) { line.add("%d", static_cast<int>(value)); }
void describe(Line& line, std::uint8_t value) { line.add("%u", static_cast<unsigned>(value)); }
void describe(Line& line, float value) { line.add("%g", static_cast<double>(value)); }

void describe(Line& line, std::uint32_t value) { line.add(value < 10 ? "%u" : "0x%X", static_cast<unsigned>(value)); }

void describe(Line& line, const void* pointer) {
  if (pointer == nullptr)
    line.add("null");
  else
    line.add("0x%llx", static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(pointer)));
}

void describe(Line& line, const char* text) {
  char copy[200];
  std::size_t length = 0;
  bool readable = true;
  // Byte by byte: the text may end just before memory that cannot be read.
  while (length < sizeof copy - 1 && (readable = peek(copy + length, text + length, 1)) && copy[length] != 0) ++length;
  copy[length] = 0;
  if (readable)
    line.add("\"%s\"", copy);
  else
    describe(line, static_cast<const void*>(text));
}

void describe(Line& line, const Bitmap* bitmap) {
  describe(line, static_cast<const void*>(bitmap));
  Bitmap record;
  if (!read(record, bitmap) || record.version != recordVersion) return;
  line.add(" [%dx%d format %u", static_cast<int>(record.width), static_cast<int>(record.height),
           static_cast<unsigned>(record.format & KX_FORMAT_CODE_MASK));
  if ((record.format & KX_STORAGE_MASK) != 0) line.add(" packed");
  if (record.lockCount != 0) line.add(" locked %u", static_cast<unsigned>(record.lockCount));
  line.add("]");
}

void describe(Line& line, const Screen* screen) {
  describe(line, static_cast<const void*>(screen));
  Screen record;
  if (!read(record, screen) || record.version != recordVersion) return;
  line.add(" [%dx%d flags 0x%X]", static_cast<int>(record.mode.width), static_cast<int>(record.mode.height),
           static_cast<unsigned>(record.modeFlags));
}

void describe(Line& line, const Landscape* landscape) {
  describe(line, static_cast<const void*>(landscape));
  Landscape record;
  if (read(record, landscape))
    line.add(" [%dx%d cells]", static_cast<int>(record.width), static_cast<int>(record.height));
}

void describe(Line& line, const VideoMode* mode) {
  describe(line, static_cast<const void*>(mode));
  VideoMode record;
  if (read(record, mode))
    line.add(" [%dx%d format %d %u Hz]", static_cast<int>(record.width), static_cast<int>(record.height),
             static_cast<int>(record.format), static_cast<unsigned>(record.refresh));
}

bool describeOutput(Line& line, void* const* cell, void (*describeHandle)(Line&, const void*)) {
  void* handle = nullptr;
  if (!peek(&handle, cell, sizeof handle)) return false;
  describeHandle(line, handle);
  return true;
}

bool describeOutput(Line& line, std::int32_t* cell) {
  std::int32_t value = 0;
  if (!peek(&value, cell, sizeof value)) return false;
  describe(line, value);
  return true;
}

bool describeOutput(Line& line, std::uint32_t* cell) {
  std::uint32_t value = 0;
  if (!peek(&value, cell, sizeof value)) return false;
  line.add("%u", static_cast<unsigned>(value));
  return true;
}

void describeCode(Line& line, std::uint32_t code) {
  if (code == 0) return line.add("0");
  std::string_view name = kxErrorName(code);
  if (name.starts_with("KX_")) name = name.substr(3, name.rfind('_') - 3);
  line.add("0x%04X %.*s", static_cast<unsigned>(code), static_cast<int>(name.size()), name.data());
}

}  // namespace kxtrace
