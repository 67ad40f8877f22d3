// What an exported function does here: it calls the original, and writes down with what and how it ended.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>
#include <type_traits>

#include "describe.h"
#include "log.h"

namespace kxtrace {

template <typename Value>
bool failed(Answer answer, Value value) {
  return (answer == Answer::Code && value != 0) || (answer == Answer::Flag && value == 0);
}

/// The next of the names "first, second, third"; they are moved on.
inline std::string_view nextName(std::string_view& names) {
  const std::size_t end = names.find(", ");
  const std::string_view name = names.substr(0, end);
  names.remove_prefix(end == std::string_view::npos ? names.size() : end + 2);
  return name;
}

template <typename... Arguments>
void describeCall(Line& line, const Entry& entry, Arguments... arguments) {
  [[maybe_unused]] std::string_view names = entry.parameters;
  [[maybe_unused]] const char* separator = "";
  line.add("%s(", entry.name);
  [[maybe_unused]] const auto one = [&](auto argument) {
    const std::string_view name = nextName(names);
    line.add("%s%.*s ", separator, static_cast<int>(name.size()), name.data());
    describe(line, argument);
    separator = ", ";
  };
  (one(arguments), ...);
  line.add(")");
}

template <typename Value, typename... Arguments>
void describeResult(Line& line, const Entry& entry, Value value, Arguments... arguments) {
  line.add(" = ");
  if (entry.answer == Answer::Code)
    describeCode(line, static_cast<std::uint32_t>(value));
  else
    describe(line, value);
  if (failed(entry.answer, value)) return;
  [[maybe_unused]] std::string_view names = entry.parameters;
  [[maybe_unused]] const auto one = [&](auto argument) {
    const std::string_view name = nextName(names);
    Line output;
    if (describeOutput(output, argument))
      line.add(", %.*s: %s", static_cast<int>(name.size()), name.data(), output.text());
  };
  (one(arguments), ...);
}

/// What a function returns when there is no library to pass its call on to.
template <typename Value>
Value withoutLibrary(Answer answer) {
  return static_cast<Value>(answer == Answer::Code ? KX_ERROR_DLLNotLoaded : 0);
}

/// The library's own function, or null.
template <typename Value, typename... Arguments>
auto originalOf(Entry& entry, Value(KX_CALL*)(Arguments...)) {
  if (!entry.known) prepare(entry, 4 * static_cast<unsigned>(sizeof...(Arguments)));
  return reinterpret_cast<Value(KX_CALL*)(Arguments...)>(entry.original);
}

/// Passes a call on; `self` only tells the types.
template <typename Value, typename... Arguments>
Value pass(Entry& entry, Value(KX_CALL* self)(Arguments...), std::type_identity_t<Arguments>... arguments) {
  const auto original = originalOf(entry, self);
  if (original == nullptr) return withoutLibrary<Value>(entry.answer);

  const std::uint32_t number = count(entry);
  const unsigned depth = CallDepth::now();
  Line line;
  // Before the call, as a deleted object cannot be described any more.
  if (writes(entry, depth, false)) describeCall(line, entry, arguments...);
  if (writesBegin() && !line.empty()) write(number, depth, line);

  CallDepth::set(depth + 1);
  const Value value = original(arguments...);
  CallDepth::set(depth);

  if (failed(entry.answer, value)) {
    countFailure(entry, static_cast<std::uint32_t>(value));
    if (line.empty() && writes(entry, depth, true)) describeCall(line, entry, arguments...);
  }
  if (!line.empty()) {
    describeResult(line, entry, value, arguments...);
    write(number, depth, line);
  }
  return value;
}

}  // namespace kxtrace
