// The choice of the row kernels.
// SPDX-License-Identifier: MIT
#include "pixel/rows.h"

#include "pixel/cpu.h"

namespace kx {

namespace {

RowKernels choose(CpuLevel level) {
  RowKernels kernels = portableRows();
  if (level >= CpuLevel::Sse2) kernels = improveRowsSse2(kernels);
  if (level >= CpuLevel::Avx2) kernels = improveFetchAvx2(improveRowsAvx2(kernels));
  if (level >= CpuLevel::Avx512) kernels = improveCopiesAvx512(improveFetchAvx512(improveRowsAvx512(kernels)));
  return kernels;
}

KernelTable<RowKernels> table(choose);

}  // namespace

const RowKernels& rowKernels() { return *table; }

}  // namespace kx
