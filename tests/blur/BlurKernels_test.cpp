// The kernels of src/blur against plain code, at every instruction set of this machine.
#include "tests/blur/BlurKernels.h"

#include "tests/support/KernelCaseTest.h"

namespace vblur::test {
namespace {

class BlurKernels : public AtEachLevel {};

TEST_P(BlurKernels, EqualPlainCode) {
  expectEqualToPlainCode(blurKernels());
}

INSTANTIATE_TEST_SUITE_P(Levels, BlurKernels, testing::ValuesIn(vectorLevels()), levelName);

}  // namespace
}  // namespace vblur::test
