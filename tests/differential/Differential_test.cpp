#include <gtest/gtest.h>

#include "host/jobs/JobFile.h"
#include "tests/differential/Comparison.h"
#include "tests/support/TestServer.h"

namespace vblur::differential {
namespace {

class Differential : public testing::TestWithParam<std::int32_t> {
 protected:
  void SetUp() override { SetRenderThreads(GetParam()); }

  static void CompareMany(std::uint64_t seed, std::uint64_t count, DrawnKinds kinds) {
    for (std::uint64_t i = 0; i < count; ++i) {
      const DrawnFrame frame = DrawFrame(seed, i, kinds, DrawnDepths::All);
      ASSERT_EQ(CompareFrame(frame), "") << "frame " << i << " of seed " << seed << "\n" << host::FormatJob(frame.job);
    }
  }
};

TEST_P(Differential, FiltersEqualTheModel) {
  CompareMany(1000u + static_cast<std::uint64_t>(GetParam()), 200, DrawnKinds::Filters);
}

TEST_P(Differential, WholeFramesEqualTheModel) {
  CompareMany(2000u + static_cast<std::uint64_t>(GetParam()), 400, DrawnKinds::All);
}

INSTANTIATE_TEST_SUITE_P(Threads, Differential, testing::Values(1, 2, 3, 7, 8));

// The same frames by the plain code and by each instruction set. The kernels are those of the loaded effect, whose runs
// are not seen here.
TEST(DifferentialLevels, EveryLevelEqualsTheModel) {
  SetRenderThreads(2);
  for (const std::string& level : CpuLevels()) {
    SetCpuLevel(level);
    for (std::uint64_t i = 0; i < 150; ++i) {
      const DrawnFrame frame = DrawFrame(3000, i, i % 2 == 0 ? DrawnKinds::Filters : DrawnKinds::All, DrawnDepths::All);
      ASSERT_EQ(CompareFrame(frame), "") << level << " frame " << i << "\n" << host::FormatJob(frame.job);
    }
  }
  SetCpuLevel("native");
}

TEST(DifferentialFrames, OfAllDepthsAreThoseOfIntegersButForAThird) {
  int floats = 0;
  for (std::uint64_t i = 0; i < 300; ++i) {
    const DrawnFrame frame = DrawFrame(4000, i, DrawnKinds::All, DrawnDepths::All);
    if (*frame.job.depth == 32) {
      ++floats;
      continue;
    }
    const DrawnFrame same = DrawFrame(4000, i, DrawnKinds::All);
    EXPECT_EQ(frame.job, same.job) << i;
    EXPECT_EQ(frame.initial.values, same.initial.values) << i;
  }
  EXPECT_GT(floats, 80);
  EXPECT_LT(floats, 120);
}

}  // namespace
}  // namespace vblur::differential
