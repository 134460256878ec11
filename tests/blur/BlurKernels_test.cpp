// The kernels of src/blur against plain code, at every level of this machine.
#include "tests/blur/BlurKernels.h"

#include "tests/image/ImageKernels.h"
#include "tests/support/KernelCaseTest.h"

namespace vblur::test {
namespace {

class BlurKernels : public AtEachLevel {};

TEST_P(BlurKernels, EqualPlainCode) {
  expectEqualToPlainCode(blurKernels());
}

INSTANTIATE_TEST_SUITE_P(Levels, BlurKernels, testing::ValuesIn(vectorLevels()), levelName);

TEST(BlurKernelsOfAllLevels, HaveACaseEach) {
  expectCaseOfEachKernel({imageKernels(), blurKernels()});
}

}  // namespace
}  // namespace vblur::test
