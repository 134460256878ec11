// A share of the fuzzer's steps in every test run.
#include "tests/fuzz/OverlayFuzz.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

namespace vblur::test {
namespace {

TEST(OverlayFuzz, DoesNotCrash) {
  std::set<std::string> done;
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    {
      OverlayFuzz fuzz(seed);
      for (int step = 0; step < 2500; ++step)
        fuzz.Step();
      for (const auto& [name, count] : fuzz.counts())
        done.insert(name);
    }
    ASSERT_EQ(LinkedServer::LiveObjects(), 0) << "effects, pages or tools are left after the world of seed " << seed;
  }
  EXPECT_EQ(done.size(), 50u) << "there is nothing that is never done";
}

}  // namespace
}  // namespace vblur::test
