#include "platform/RefCount.h"

#include <latch>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace vblur {
namespace {

TEST(RefCount, StartsWithOneReference) {
  RefCount count;
  EXPECT_EQ(count.Add(), 2u);
  EXPECT_EQ(count.Drop(), 1u);
  EXPECT_EQ(count.Drop(), 0u);
}

TEST(RefCount, CountsOnSeveralThreads) {
  constexpr int kThreads = 4;
  constexpr int kEach = 4000000;
  RefCount count;
  std::latch all(kThreads);
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&] {
      all.arrive_and_wait();
      for (int n = 0; n < kEach; ++n)
        count.Add();
      for (int n = 0; n < kEach; ++n)
        count.Drop();
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(count.Drop(), 0u);
}

// For the thread sanitizer.
TEST(RefCount, TheLastToDropSeesWhatTheOthersWrote) {
  RefCount count;
  count.Add();
  int written[2] = {};
  const auto drop = [&](int& own) {
    own = 1;
    if (count.Drop() == 0) {
      EXPECT_EQ(written[0] + written[1], 2);
    }
  };
  std::thread other([&] { drop(written[1]); });
  drop(written[0]);
  other.join();
}

}  // namespace
}  // namespace vblur
