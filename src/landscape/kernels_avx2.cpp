// SPDX-License-Identifier: MIT
#include "landscape/kernels_body.h"

namespace kx {

const LandscapeKernels landscapeKernelsAvx2 = kernelsOfThisFile;

}  // namespace kx
