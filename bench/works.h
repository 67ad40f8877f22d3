// Rows from a list of workloads: each contender prepares those it can do from their description.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "pictures.h"
#include "rows.h"

namespace kxbench {

/// Adds rows for the workloads that `can` accepts. `prepare` runs at the first call and returns what is measured: a
/// call that does the whole workload once.
template <typename Work>
void addWorks(std::vector<Row>& rows, const std::vector<Work>& works, const char* contender, bool (*can)(const Work&),
              std::function<void()> (*prepare)(const Work&)) {
  for (const Work& work : works) {
    if (!can(work)) continue;
    const std::int64_t pixels = work.pixels();
    rows.push_back({work.name, contender, pixels, pixels * Picture(work.target, 1, 1).pixelBytes(),
                    [&work, prepare, call = std::make_shared<std::function<void()>>()] {
                      if (!*call) *call = prepare(work);
                      (*call)();
                    }});
  }
}

}  // namespace kxbench
