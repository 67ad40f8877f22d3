// Detecting the processor's level and keeping the kernel tables in step with it.
// SPDX-License-Identifier: MIT
#include "pixel/cpu.h"

#include <algorithm>

namespace kx {

namespace {

// Both are set before any constructor runs, as kernel tables of other files are made in no particular order.
constinit CpuLevel limit = CpuLevel::Avx512;
constinit AnyKernelTable* firstTable = nullptr;

}  // namespace

CpuLevel detectedCpuLevel() {
  __builtin_cpu_init();
  if (!__builtin_cpu_supports("sse2")) return CpuLevel::Portable;
  if (!__builtin_cpu_supports("avx2")) return CpuLevel::Sse2;
  // With the byte permutations; the processors without them also pay for wide vectors with their clock.
  if (!__builtin_cpu_supports("avx512f") || !__builtin_cpu_supports("avx512bw") ||
      !__builtin_cpu_supports("avx512vl") || !__builtin_cpu_supports("avx512vbmi"))
    return CpuLevel::Avx2;
  return CpuLevel::Avx512;
}

CpuLevel cpuLevel() { return std::min(limit, detectedCpuLevel()); }

void limitCpuLevel(CpuLevel highest) {
  limit = highest;
  AnyKernelTable::selectAll(cpuLevel());
}

AnyKernelTable::AnyKernelTable() : next_(firstTable) { firstTable = this; }

void AnyKernelTable::selectAll(CpuLevel level) {
  for (AnyKernelTable* table = firstTable; table != nullptr; table = table->next_) table->select(level);
}

}  // namespace kx
