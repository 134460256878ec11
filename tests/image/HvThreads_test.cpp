#include "image/HvThreads.h"

#include <array>
#include <atomic>
#include <chrono>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/ProcessorSeconds.h"
#include "tests/support/ThreadCount.h"

namespace vblur::test {
namespace {

template <class Function>
HvThreadFunction entry(Function* function) {
  return reinterpret_cast<HvThreadFunction>(function);
}

template <class T>
HvWord word(T* pointer) {
  return reinterpret_cast<HvWord>(pointer);
}

// The indices of a run, each with its thread.
struct Visits {
  void note() {
    const std::lock_guard lock(mutex);
    indices.insert(HvThreadIndex());
    threads.insert(std::this_thread::get_id());
  }
  static void visit(HvWord self) { reinterpret_cast<Visits*>(self)->note(); }

  std::mutex mutex;
  std::multiset<std::int32_t> indices;
  std::set<std::thread::id> threads;
};

std::multiset<std::int32_t> upTo(std::int32_t count) {
  std::multiset<std::int32_t> all;
  for (std::int32_t i = 0; i < count; ++i)
    all.insert(i);
  return all;
}

TEST(HvThreads, RunSeesEachIndexOnce) {
  for (const std::int32_t count : kThreadCounts) {
    const ThreadCount scope(count);
    EXPECT_EQ(HvThreadCount(), count);
    Visits visits;
    HvThreadRun(entry(&Visits::visit), 1, word(&visits));
    EXPECT_EQ(visits.indices, upTo(count));
    EXPECT_EQ(visits.threads.size(), static_cast<std::size_t>(count));
    EXPECT_TRUE(visits.threads.contains(std::this_thread::get_id()));
    EXPECT_EQ(HvThreadIndex(), 0);
  }
}

TEST(HvThreads, RunOnOneThreadCallsOnceOnTheCaller) {
  const ThreadCount scope(1);
  Visits visits;
  HvThreadRun(entry(&Visits::visit), 1, word(&visits));
  EXPECT_EQ(visits.indices, upTo(1));
  EXPECT_EQ(visits.threads, std::set{std::this_thread::get_id()});
}

// The arguments of the last call.
std::array<HvWord, 6> given;
int givenCount;

template <class... Words>
void take(Words... words) {
  if (HvThreadIndex() != 0) return;
  givenCount = sizeof...(words);
  given = {words...};
}

std::array<HvWord, 6> firstOf(int count) {
  std::array<HvWord, 6> words{};
  for (int i = 0; i < count; ++i)
    words[static_cast<std::size_t>(i)] = 11 * (i + 1);
  return words;
}

class HvThreadsArguments : public ::testing::TestWithParam<std::int32_t> {};

TEST_P(HvThreadsArguments, ArePassedThrough) {
  const ThreadCount scope(GetParam());
  const HvWord w[] = {11, 22, 33, 44, 55, 66, 77, 88, 99};
  using W = HvWord;
  const auto expectCount = [](int count) {
    EXPECT_EQ(givenCount, count);
    EXPECT_EQ(given, firstOf(count));
  };
  HvThreadRun(entry(&take<W>), 1, w[0]);
  expectCount(1);
  HvThreadRun(entry(&take<W, W>), 2, w[0], w[1]);
  expectCount(2);
  HvThreadRun(entry(&take<W, W, W>), 3, w[0], w[1], w[2]);
  expectCount(3);
  HvThreadRun(entry(&take<W, W, W, W>), 4, w[0], w[1], w[2], w[3]);
  expectCount(4);
  HvThreadRun(entry(&take<W, W, W, W, W>), 5, w[0], w[1], w[2], w[3], w[4]);
  expectCount(5);
  const auto six = entry(&take<W, W, W, W, W, W>);
  HvThreadRun(six, 6, w[0], w[1], w[2], w[3], w[4], w[5]);
  expectCount(6);
  for (const std::int32_t count : {7, 8, 9}) {
    givenCount = 0;
    given = {};
    HvThreadRun(six, count, w[0], w[1], w[2], w[3], w[4], w[5], w[6], w[7], w[8]);
    expectCount(6);
  }
}

TEST_P(HvThreadsArguments, OfNoneAreTheCallBlock) {
  const ThreadCount scope(GetParam());
  static std::atomic<int> calls;
  calls = 0;
  HvThreadRun(entry(+[](const HvCallBlock* block) {
                EXPECT_EQ(block->count, 0);
                EXPECT_NE(block->function, nullptr);
                ++calls;
              }),
              0);
  EXPECT_EQ(calls, GetParam());
}

INSTANTIATE_TEST_SUITE_P(OnThreads, HvThreadsArguments, ::testing::Values(1, 3));

// Detects whether two runs overlap.
struct Together {
  static void work(HvWord self, HvWord run) {
    auto* together = reinterpret_cast<Together*>(self);
    const auto own = static_cast<std::size_t>(run);
    ++together->atWork[own];
    if (together->atWork[1 - own] != 0) together->met = true;
    std::this_thread::yield();
    ++together->calls;
    --together->atWork[own];
  }
  std::array<std::atomic<int>, 2> atWork{};
  std::atomic<int> calls{0};
  std::atomic<bool> met{false};
};

TEST(HvThreads, RunServesTwoCallersOneAfterTheOther) {
  const ThreadCount scope(3);
  Together together;
  const auto caller = [&](HvWord run) {
    for (int i = 0; i < 300; ++i)
      HvThreadRun(entry(&Together::work), 2, word(&together), run);
  };
  std::thread other(caller, 1);
  caller(0);
  other.join();
  EXPECT_FALSE(together.met);
  EXPECT_EQ(together.calls, 2 * 300 * 3);
}

// A nested run, and the index of the outer one before and after.
struct Nest {
  static void outer(HvWord self) {
    auto* nest = reinterpret_cast<Nest*>(self);
    const std::int32_t index = HvThreadIndex();
    Visits inner;
    HvThreadRun(entry(&Visits::visit), 1, word(&inner));
    const std::lock_guard lock(nest->mutex);
    nest->kept = nest->kept && HvThreadIndex() == index && inner.indices == upTo(HvThreadCount()) &&
                 inner.threads == std::set{std::this_thread::get_id()};
    nest->indices.insert(index);
  }
  std::mutex mutex;
  bool kept = true;
  std::multiset<std::int32_t> indices;
};

TEST(HvThreads, RunWithinARunDoesNotHang) {
  for (const std::int32_t count : {1, 2, 7}) {
    const ThreadCount scope(count);
    Nest nest;
    HvThreadRun(entry(&Nest::outer), 1, word(&nest));
    EXPECT_TRUE(nest.kept);
    EXPECT_EQ(nest.indices, upTo(count));
  }
}

TEST(HvThreads, ManyShortRunsLoseNoCall) {
  static std::atomic<std::int64_t> sum;
  sum = 0;
  std::int64_t expected = 0;
  for (int round = 0; round < 1500; ++round) {
    const std::int32_t count = kThreadCounts[round / 100 % 5];
    if (round % 100 == 0) HvSetThreadCount(count);
    HvThreadRun(entry(+[](HvWord value) { sum += value * (1 + HvThreadIndex()); }), 1, HvWord{round});
    expected += std::int64_t{round} * count * (count + 1) / 2;
    ASSERT_EQ(sum, expected) << "round " << round;
  }
  HvSetThreadCount(0);
}

TEST(HvThreads, RunShowsTheCallerAllThatItsThreadsWrote) {
  const ThreadCount scope(7);
  // Plain memory: the run itself must synchronise these writes.
  std::array<int, 7> plain{};
  for (int round = 1; round <= 500; ++round) {
    HvThreadRun(entry(+[](HvWord values, HvWord value) {
                  (*reinterpret_cast<std::array<int, 7>*>(values))[static_cast<std::size_t>(HvThreadIndex())] +=
                      static_cast<int>(value);
                }),
                2, word(&plain), HvWord{1});
    for (const int value : plain)
      ASSERT_EQ(value, round);
  }
}

TEST(HvThreads, RunLeavesThreadsThatRestAndTakeNoTime) {
  constexpr double kPause = 0.2;
  const ThreadCount scope(8);
  Visits visits;
  HvThreadRun(entry(&Visits::visit), 1, word(&visits));
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  const double before = ProcessorSeconds();
  std::this_thread::sleep_for(std::chrono::duration<double>(kPause));
  const double spent = ProcessorSeconds() - before;
  EXPECT_LT(spent, kPause / 10);
}

TEST(HvThreads, CountIsWhatTheMachineReportsUntilItIsSet) {
  HvSetThreadCount(0);
  const std::int32_t reported = HvThreadCount();
  EXPECT_GE(reported, 1);
  HvSetThreadCount(5);
  EXPECT_EQ(HvThreadCount(), 5);
  HvSetThreadCount(-4);
  EXPECT_EQ(HvThreadCount(), reported);
  HvSetThreadCount(0);
  EXPECT_EQ(HvThreadCount(), reported);
}

TEST(HvThreads, CountCanBeSetBetweenRuns) {
  for (const std::int32_t count : {8, 1, 3, 2, 7, 1, 8}) {
    HvSetThreadCount(count);
    Visits visits;
    HvThreadRun(entry(&Visits::visit), 1, word(&visits));
    EXPECT_EQ(visits.indices, upTo(count));
  }
  HvSetThreadCount(0);
}

TEST(HvThreads, IndexIsZeroOutsideARun) {
  EXPECT_EQ(HvThreadIndex(), 0);
  const ThreadCount scope(4);
  std::thread other([] { EXPECT_EQ(HvThreadIndex(), 0); });
  other.join();
}

TEST(HvThreads, StoppedThreadsStartAgainWithTheNextRun) {
  HvSetThreadCount(3);
  for (int i = 0; i < 3; ++i) {
    std::atomic<std::int32_t> calls = 0;
    HvThreadRun(reinterpret_cast<HvThreadFunction>(+[](std::atomic<std::int32_t>* count) { count->fetch_add(1); }), 1,
                reinterpret_cast<HvWord>(&calls));
    EXPECT_EQ(calls.load(), 3);
    HvStopThreads();
    EXPECT_EQ(HvThreadCount(), 3);
  }
  HvStopThreads();
  HvSetThreadCount(0);
}

}  // namespace
}  // namespace vblur::test
