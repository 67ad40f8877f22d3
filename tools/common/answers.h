// What the number says that an exported function returns.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace kxtools {

/// A code (0 or a fault), a value of the function's own, or a flag (0 means it failed).
enum class Answer { Code, Value, Flag };

constexpr std::string_view functionsWithValues[] = {
    // Settled: they answer 0 without having failed, the latter when no driver is named.
    "KX_isVerticalBlank",
    "KX_getScreenInterface",
#define KX_VALUE(name) #name,
#include "kxgraphic/exports/values.inc"
#undef KX_VALUE
};

/// By the function's name and the type of its result.
constexpr Answer answerOf(std::string_view name, std::string_view resultType) {
  for (const std::string_view function : functionsWithValues)
    if (function == name) return Answer::Value;
  if (resultType == "uint8_t") return Answer::Flag;
  return resultType == "uint32_t" ? Answer::Code : Answer::Value;
}

}  // namespace kxtools
