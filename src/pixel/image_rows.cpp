// The choice of the image kernels.
// SPDX-License-Identifier: MIT
#include "pixel/image_rows.h"

#include "pixel/cpu.h"

namespace kx {

namespace {

ImageKernels choose(CpuLevel level) { return level >= CpuLevel::Avx2 ? avx2ImageRows() : portableImageRows(); }

KernelTable<ImageKernels> table(choose);

}  // namespace

const ImageKernels& imageKernels() { return *table; }

}  // namespace kx
