// The parameter list of an exported function, taken apart: "(Bitmap* dst, int32_t dx)".
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kxinterface {

struct Parameter {
  std::string type, name;
};

inline std::string trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(' ');
  return begin == std::string_view::npos ? std::string()
                                         : std::string(text.substr(begin, text.find_last_not_of(' ') + 1 - begin));
}

/// `text` as the preprocessor spells it, with its parentheses.
inline std::vector<Parameter> parametersOf(std::string_view text) {
  std::vector<Parameter> result;
  text = text.substr(1, text.size() - 2);
  if (text == "void") return result;
  for (;;) {
    const std::size_t comma = text.find(',');
    const std::string_view one = text.substr(0, comma);
    const std::size_t name = one.find_last_of(" *") + 1;
    result.push_back({trimmed(one.substr(0, name)), trimmed(one.substr(name))});
    if (comma == std::string_view::npos) return result;
    text.remove_prefix(comma + 1);
  }
}

}  // namespace kxinterface
