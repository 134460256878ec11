// The kernels of src/image against plain code, at every instruction set of this machine.
#include "tests/image/ImageKernels.h"

#include "tests/support/KernelCaseTest.h"

namespace vblur::test {
namespace {

class ImageKernels : public AtEachLevel {};

TEST_P(ImageKernels, EqualPlainCode) {
  expectEqualToPlainCode(imageKernels());
}

TEST_P(ImageKernels, HaveACaseEach) {
  expectCaseOfEachKernel({imageKernels()});
  EXPECT_TRUE(kernelsRan({}));
}

INSTANTIATE_TEST_SUITE_P(Levels, ImageKernels, testing::ValuesIn(vectorLevels()), levelName);

}  // namespace
}  // namespace vblur::test
