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
    OverlayFuzz fuzz(seed);
    for (int step = 0; step < 1500; ++step)
      fuzz.Step();
    for (const auto& [name, count] : fuzz.counts())
      done.insert(name);
  }
  EXPECT_EQ(done.size(), 24u) << "there is nothing that is never done";
}

}  // namespace
}  // namespace vblur::test
