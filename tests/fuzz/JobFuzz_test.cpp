// A share of the fuzzer's frames in every test run.
#include "tests/fuzz/JobFuzz.h"

#include <gtest/gtest.h>

namespace vblur::test {
namespace {

TEST(JobFuzz, RendersOrRefusesEveryFrame) {
  constexpr std::uint64_t kFrames = 3000;
  JobFuzz fuzz(1);
  for (std::uint64_t index = 0; index < kFrames; ++index)
    fuzz.Render(index);
  // Each end is reached often enough to be looked at.
  EXPECT_GT(fuzz.counts().rendered, 800);
  EXPECT_GT(fuzz.counts().refusedByHost, 200);
  EXPECT_GT(fuzz.counts().refusedByEffect, 200);
}

}  // namespace
}  // namespace vblur::test
