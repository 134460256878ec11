// The kernels of src/composite against plain code, at every level of this machine.
#include "tests/composite/CompositeKernels.h"

#include "tests/blur/BlurKernels.h"
#include "tests/image/ImageKernels.h"
#include "tests/support/KernelCaseTest.h"

namespace vblur::test {
namespace {

class CompositeKernels : public AtEachLevel {};

TEST_P(CompositeKernels, EqualPlainCode) {
  expectEqualToPlainCode(compositeKernels());
}

INSTANTIATE_TEST_SUITE_P(Levels, CompositeKernels, testing::ValuesIn(vectorLevels()), levelName);

TEST(CompositeKernelsOfAllLevels, HaveACaseEach) {
  expectCaseOfEachKernel({imageKernels(), blurKernels(), compositeKernels()});
}

}  // namespace
}  // namespace vblur::test
