// Arguments as text. Records are read with care: a traced program may pass anything.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "kxgraphic/kxgraphic.h"
#include "line.h"

namespace kxtrace {

void describe(Line& line, std::int32_t value);
void describe(Line& line, std::uint32_t value);
void describe(Line& line, std::uint8_t value);
void describe(Line& line, float value);
void describe(Line& line, const char* text);
void describe(Line& line, const void* pointer);
void describe(Line& line, const Bitmap* bitmap);
void describe(Line& line, const Screen* screen);
void describe(Line& line, const Landscape* landscape);
void describe(Line& line, const VideoMode* mode);

/// What a pointer argument points at after the call, when that is one value: a handle or a number. False for others.
bool describeOutput(Line& line, void* const* cell, void (*describeHandle)(Line&, const void*));
bool describeOutput(Line& line, std::int32_t* cell);
bool describeOutput(Line& line, std::uint32_t* cell);

template <typename Handle>
bool describeOutput(Line& line, Handle** cell) {
  return describeOutput(line, reinterpret_cast<void* const*>(cell),
                        [](Line& to, const void* handle) { describe(to, static_cast<const Handle*>(handle)); });
}

template <typename Argument>
bool describeOutput(Line&, Argument) {
  return false;
}

/// A result code and the name of its fault: "0x2005 CoordinateOutOfRange".
void describeCode(Line& line, std::uint32_t code);

}  // namespace kxtrace
