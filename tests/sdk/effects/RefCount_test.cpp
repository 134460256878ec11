#include "platform/RefCount.h"

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
  constexpr int kEach = 10000;
  RefCount count;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int n = 0; n < kEach; ++n)
        count.Add();
      for (int n = 0; n < kEach; ++n)
        EXPECT_GT(count.Drop(), 0u);
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(count.Drop(), 0u);
}

}  // namespace
}  // namespace vblur
