// The kernels of src/composite against plain code, at every level of this machine.
#include "tests/composite/CompositeKernels.h"

#include <set>
#include <string>

#include "tests/support/KernelCaseTest.h"

namespace vblur::test {
namespace {

class CompositeKernels : public AtEachLevel {};

TEST_P(CompositeKernels, EqualPlainCode) {
  expectEqualToPlainCode(compositeKernels());
}

INSTANTIATE_TEST_SUITE_P(Levels, CompositeKernels, testing::ValuesIn(vectorLevels()), levelName);

// The kernels of this folder by their names, since the program has others as well.
TEST(CompositeKernelsOfAllLevels, HaveACaseEach) {
  std::set<std::string> listed;
  for (const KernelCase& kernel : compositeKernels())
    listed.insert(kernel.kernel);
  std::set<std::string> found;
  for (const HvKernel* kernel = HvKernel::first(); kernel != nullptr; kernel = kernel->next()) {
    const std::string name = kernel->name();
    for (const char* start : {"merge", "mix", "quickMix", "paint"})
      if (name.rfind(start, 0) == 0) found.insert(name);
  }
  EXPECT_EQ(found, listed);
}

}  // namespace
}  // namespace vblur::test
