// A share of the fuzzer's steps in every test run.
#include "tests/fuzz/OverlayFuzz.h"

#include <gtest/gtest.h>

namespace vblur::test {
namespace {

TEST(OverlayFuzz, GoesOnWhateverHappens) {
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    OverlayFuzz fuzz(seed);
    for (int step = 0; step < 1500; ++step)
      fuzz.Step();
    for (const auto& [name, count] : fuzz.counts())
      EXPECT_GT(count, 0) << name;
    EXPECT_EQ(fuzz.counts().size(), 24u) << "everything is done";
  }
}

}  // namespace
}  // namespace vblur::test
