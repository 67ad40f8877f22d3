// Holds the records to the layouts of exports/records.inc, which games and drivers share.
// SPDX-License-Identifier: MIT
#include <cstddef>
#include <string_view>
#include <type_traits>

#include "kxgraphic/types.h"

namespace {

/// `wanted32` holds where pointers have four bytes, `wanted64` where they have eight.
constexpr bool holds(std::size_t actual, std::size_t wanted32, std::size_t wanted64) {
  return actual == (sizeof(void*) == 4 ? wanted32 : wanted64);
}

template <typename Type, std::size_t Count>
using FieldType = std::conditional_t<Count == 1, Type, Type[Count]>;

#define KX_RECORD(record, size32, size64) static_assert(holds(sizeof(record), size32, size64));
#define KX_FIELD(record, type, field, count, offset32, offset64)                  \
  static_assert(std::is_same_v<decltype(record::field), FieldType<type, count>>); \
  static_assert(holds(offsetof(record, field), offset32, offset64));
#include "kxgraphic/exports/records.inc"
#undef KX_RECORD
#undef KX_FIELD

struct Span {
  std::string_view record;
  std::size_t begin, size, alignment;
};

/// The fields of each record, followed by its end.
constexpr Span spans[] = {
#define KX_RECORD(record, size32, size64) {#record, sizeof(record), 0, alignof(record)},
#define KX_FIELD(record, type, field, count, offset32, offset64) \
  {#record, offsetof(record, field), sizeof(record::field), alignof(type)},
#include "kxgraphic/exports/records.inc"
#undef KX_RECORD
#undef KX_FIELD
};

/// True when the list leaves no room in any record for a field that it does not name.
constexpr bool listIsWhole() {
  const Span* end = spans;
  const Span* last = nullptr;
  const auto follows = [](const Span& next, std::size_t begin) {
    return next.begin >= begin && next.begin - begin < next.alignment;
  };
  for (const Span& span : spans) {
    const bool isRecord = span.size == 0;
    if (isRecord && last != nullptr && !follows(*end, last->begin + last->size)) return false;
    if (!isRecord && !follows(span, last == nullptr ? 0 : last->begin + last->size)) return false;
    last = isRecord ? nullptr : &span;
    if (isRecord) end = &span;
  }
  return last != nullptr && follows(*end, last->begin + last->size);
}
static_assert(listIsWhole());

// The method tables: the version, padded to a pointer, and the slots.
static_assert(offsetof(BitmapMethods, getDriverTechnology) == sizeof(void*));
static_assert(sizeof(BitmapMethods) == 79 * sizeof(void*));
static_assert(sizeof(ScreenMethods) == 11 * sizeof(void*));
static_assert(sizeof(DeviceMethods) == 46 * sizeof(void*));

}  // namespace
