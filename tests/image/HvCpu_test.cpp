#include "image/HvCpu.h"

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

#include "image/CopyPixels.h"
#include "tests/support/KernelRuns.h"

namespace vblur {
namespace {

TEST(HvCpu, ListsItsLevelsFromThePlainestToTheBest) {
  const auto& levels = HvCpuLevels();
  ASSERT_GE(levels.size(), 3u);
  EXPECT_EQ(levels.front(), "twin");
  EXPECT_EQ(levels.back(), "native");
  EXPECT_EQ(std::set<std::string>(levels.begin(), levels.end()).size(), levels.size());
}

TEST(HvCpu, TakesEveryLevelOfItsListAndNoOther) {
  for (const std::string& level : HvCpuLevels()) {
    EXPECT_TRUE(HvSetCpuLevel(level));
    EXPECT_EQ(HvUsesVectors(), level != "twin");
    if (level != "native") {
      EXPECT_EQ(HvCpuLevel(), level);
    }
  }
  // The best level is the last before "native".
  EXPECT_EQ(HvCpuLevel(), *(HvCpuLevels().end() - 2));
  for (const char* other : {"", "avx9", "TWIN", "sse"})
    EXPECT_FALSE(HvSetCpuLevel(other)) << other;
  EXPECT_EQ(HvCpuLevel(), *(HvCpuLevels().end() - 2)) << "what is refused changes nothing";
}

TEST(HvCpu, RunsTheChosenLevelAfterOneThatIsRefused) {
  const std::uint32_t word = 1;
  std::uint32_t row[20];
  for (const std::string& name : test::vectorLevels()) {
    const test::CpuLevel level(name);
    EXPECT_FALSE(HvSetCpuLevel("avx9"));
    test::forgetKernelRuns();
    fillWords(sizeof word, &word, 20, row);
    EXPECT_TRUE(test::kernelsRan({"fillWords"}));
  }
}

TEST(HvCpu, RunsNoKernelAtTheTwin) {
  const test::CpuLevel level("twin");
  test::forgetKernelRuns();
  std::uint32_t row[20];
  fillPixels(row, std::uint32_t{1}, 20);
  EXPECT_TRUE(test::kernelsRan({}));
}

}  // namespace
}  // namespace vblur
