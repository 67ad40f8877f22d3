// The table of everything measured. A group of benchmarks adds its rows; the report reads them.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace kxbench {

/// One contender at one workload.
struct Row {
  std::string workload;        ///< "m.crc"
  std::string contender;       ///< "kx", or the name of a peer
  std::int64_t items;          ///< pixels or bytes that one call works on
  std::int64_t bytes;          ///< what memcpy copies for comparison
  std::function<void()> call;  ///< does the work once
};

/// The rows of all groups, made once. Nothing is prepared until a row is called first.
const std::vector<Row>& allRows();

/// Takes a result that nothing else uses, so that it has to be computed.
void keep(std::uint32_t value);

/// A group: appends its rows. Static objects of this type register it.
struct Group {
  using Add = void (*)(std::vector<Row>& rows);
  explicit Group(Add add);
};

}  // namespace kxbench
