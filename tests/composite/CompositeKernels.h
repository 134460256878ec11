// The kernels of src/composite, for tests and benchmarks.
#pragma once

#include "tests/support/KernelCase.h"

namespace vblur::test {

inline std::vector<KernelCase> compositeKernels() {
  return {};
}

}  // namespace vblur::test
