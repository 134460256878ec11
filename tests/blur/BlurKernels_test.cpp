// The kernels of src/blur against plain code, at every level of this machine.
#include "tests/blur/BlurKernels.h"

#include <set>
#include <string>

#include "tests/image/ImageKernels.h"
#include "tests/support/KernelCaseTest.h"

namespace vblur::test {
namespace {

class BlurKernels : public AtEachLevel {};

TEST_P(BlurKernels, EqualPlainCode) {
  expectEqualToPlainCode(blurKernels());
}

INSTANTIATE_TEST_SUITE_P(Levels, BlurKernels, testing::ValuesIn(vectorLevels()), levelName);

// Kernels that work on several rows are tested in BoxSweep_test, StreamRows_test and TransposePixels_test.
TEST(BlurKernelsOfAllLevels, HaveATestEach) {
  std::set<std::string> tested{"boxSweep 8", "boxSweep 16", "boxSweep 32", "streamRows", "transposePixels"};
  for (const KernelCase& kernel : blurKernels())
    tested.insert(kernel.kernel);
  std::set<std::string> found;
  for (const HvKernel* kernel = HvKernel::first(); kernel != nullptr; kernel = kernel->next())
    found.insert(kernel->name());
  for (const KernelCase& kernel : imageKernels())
    found.erase(kernel.kernel);
  EXPECT_EQ(found, tested);
}

}  // namespace
}  // namespace vblur::test
