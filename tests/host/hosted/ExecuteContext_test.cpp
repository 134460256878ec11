#include "host/hosted/ExecuteContext.h"

#include <csignal>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace vblur::host {
namespace {

TEST(ExecuteContext, ContinuesUntilItIsStopped) {
  ExecuteContext context;
  for (int i = 0; i < 1000; ++i)
    EXPECT_NE(context.MayContinue(), 0);
  EXPECT_FALSE(context.Stopped());
  context.Stop();
  EXPECT_TRUE(context.Stopped());
  EXPECT_EQ(context.MayContinue(), 0);
}

ExecuteContext* signalled = nullptr;

TEST(ExecuteContext, ASignalHandlerMayStopIt) {
  ExecuteContext context;
  signalled = &context;
  const auto before = std::signal(SIGINT, [](int) { signalled->Stop(); });
  EXPECT_EQ(std::raise(SIGINT), 0);
  std::signal(SIGINT, before);
  EXPECT_EQ(context.MayContinue(), 0);
}

TEST(ExecuteContext, StopsAfterAKnownNumberOfPolls) {
  for (const int polls : {0, 1, 17}) {
    ExecuteContext context;
    context.StopAfterPolls(polls);
    for (int i = 0; i < polls; ++i)
      EXPECT_NE(context.MayContinue(), 0);
    EXPECT_FALSE(context.Stopped());
    EXPECT_EQ(context.MayContinue(), 0);
    EXPECT_EQ(context.MayContinue(), 0);
    EXPECT_TRUE(context.Stopped());
  }
}

TEST(ExecuteContext, CountsThePollsOfAllThreads) {
  ExecuteContext context;
  context.StopAfterPolls(1000);
  std::atomic<int> passed = 0;
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      while (context.MayContinue() != 0)
        ++passed;
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  // A granted poll may still see the stop that another thread has just set.
  EXPECT_LE(passed, 1000);
  EXPECT_GE(passed, 1000 - 3);
}

}  // namespace
}  // namespace vblur::host
