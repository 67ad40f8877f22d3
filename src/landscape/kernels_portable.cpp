// SPDX-License-Identifier: MIT
#include "landscape/kernels_body.h"

namespace kx {

const LandscapeKernels landscapeKernelsPortable = kernelsOfThisFile;

const KernelTable<LandscapeKernels> landscapeKernels([](CpuLevel level) {
  return level >= CpuLevel::Avx2 ? landscapeKernelsAvx2 : landscapeKernelsPortable;
});

}  // namespace kx
