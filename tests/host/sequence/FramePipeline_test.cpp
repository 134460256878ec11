#include "host/sequence/FramePipeline.h"

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/sequence/IdleStages.h"

namespace vblur::host {
namespace {

TEST(FramePipeline, EveryItemPassesEveryStageInItsSlot) {
  for (const std::size_t slots : {1u, 2u, 3u, 7u}) {
    std::vector<std::int64_t> inSlot(slots, -1);
    std::vector<std::int64_t> rendered;
    std::vector<std::int64_t> reported;
    FrameStages stages = IdleStages();
    stages.read = [&](std::size_t slot, std::int64_t item) { inSlot[slot] = item; };
    stages.render = [&](std::size_t lane, std::size_t slot, std::int64_t item) {
      EXPECT_EQ(lane, 0u);
      EXPECT_EQ(inSlot[slot], item);
      rendered.push_back(item);
    };
    stages.write = [&](std::size_t slot, std::int64_t item) { EXPECT_EQ(inSlot[slot], item); };
    stages.report = [&](std::size_t slot, std::int64_t item) {
      EXPECT_EQ(inSlot[slot], item);
      reported.push_back(item);
    };
    RunFramePipeline(1, slots, 200, stages);
    ASSERT_EQ(rendered.size(), 200u);
    for (std::size_t i = 0; i < 200; ++i)
      EXPECT_EQ(rendered[i], static_cast<std::int64_t>(i));
    EXPECT_EQ(reported, rendered);
  }
}

// A barrier for a number of parties, with a time limit of 20 seconds.
class Meeting {
 public:
  explicit Meeting(int parties) : parties_(parties) {}

  void Arrive() {
    std::unique_lock hold(lock_);
    met_ = met_ || ++present_ == parties_;
    changed_.notify_all();
    changed_.wait_for(hold, std::chrono::seconds(20), [&] { return met_; });
  }

  bool met() const { return met_; }

 private:
  const int parties_;
  std::mutex lock_;
  std::condition_variable changed_;
  int present_ = 0;
  bool met_ = false;
};

// All three stages run at once, each with a different item; without overlap the barrier times out.
TEST(FramePipeline, StagesOverlap) {
  Meeting meeting(3);
  FrameStages stages = IdleStages();
  stages.read = [&](std::size_t, std::int64_t item) {
    if (item == 2) meeting.Arrive();
  };
  stages.render = [&](std::size_t, std::size_t, std::int64_t item) {
    if (item == 1) meeting.Arrive();
  };
  stages.write = [&](std::size_t, std::int64_t item) {
    if (item == 0) meeting.Arrive();
  };
  RunFramePipeline(1, 3, 3, stages);
  EXPECT_TRUE(meeting.met());
}

TEST(FramePipeline, SeveralItemsAreReadAndWrittenAtOnce) {
  Meeting reading(2);
  Meeting writing(2);
  FrameStages stages = IdleStages();
  stages.read = [&](std::size_t, std::int64_t item) {
    if (item < 2) reading.Arrive();
  };
  stages.write = [&](std::size_t, std::int64_t item) {
    if (item < 2) writing.Arrive();
  };
  RunFramePipeline(1, 2, 2, stages);
  EXPECT_TRUE(reading.met());
  EXPECT_TRUE(writing.met());
}

TEST(FramePipeline, ItemsRenderSideBySideInLanesOfTheirOwn) {
  constexpr std::int64_t kItems = 300;
  constexpr std::size_t kLanes = 4;
  Meeting meeting(static_cast<int>(kLanes));
  std::array<std::atomic<bool>, kLanes> busy{};
  std::vector<std::int64_t> reported;
  FrameStages stages = IdleStages();
  stages.render = [&](std::size_t lane, std::size_t, std::int64_t item) {
    EXPECT_LT(lane, kLanes);
    EXPECT_FALSE(busy[lane].exchange(true));
    if (item < static_cast<std::int64_t>(kLanes)) meeting.Arrive();
    busy[lane] = false;
  };
  stages.report = [&](std::size_t, std::int64_t item) { reported.push_back(item); };
  RunFramePipeline(kLanes, kLanes + 2, kItems, stages);
  EXPECT_TRUE(meeting.met());
  ASSERT_EQ(reported.size(), static_cast<std::size_t>(kItems));
  for (std::int64_t i = 0; i < kItems; ++i)
    EXPECT_EQ(reported[static_cast<std::size_t>(i)], i);
}

TEST(FramePipeline, NothingIsBegunOnceItShallEnd) {
  std::atomic<int> asked = 0;
  std::atomic<int> read = 0;
  int reported = 0;
  FrameStages stages = IdleStages();
  stages.goesOn = [&] { return ++asked <= 5; };
  stages.read = [&](std::size_t, std::int64_t) { ++read; };
  stages.report = [&](std::size_t, std::int64_t) { ++reported; };
  RunFramePipeline(1, 3, 1000, stages);
  EXPECT_EQ(read, 5);
  EXPECT_EQ(reported, 5);
}

TEST(FramePipeline, AnExceptionOfAnyStageEndsTheRun) {
  for (int thrower = 0; thrower < 5; ++thrower) {
    int reported = 0;
    std::atomic<bool> thrown = false;
    std::atomic<int> begunAfter = 0;
    const auto step = [&](int number, std::int64_t item) {
      if (thrown && number == 0) ++begunAfter;
      if (number != thrower || item != 4) return;
      thrown = true;
      throw std::runtime_error("broken");
    };
    FrameStages stages;
    stages.read = [&](std::size_t, std::int64_t item) { step(0, item); };
    stages.render = [&](std::size_t, std::size_t, std::int64_t item) { step(1, item); };
    stages.write = [&](std::size_t, std::int64_t item) { step(2, item); };
    stages.report = [&](std::size_t, std::int64_t item) {
      step(3, item);
      ++reported;
    };
    int asked = 0;
    stages.goesOn = [&] {
      step(4, asked++);
      return true;
    };
    EXPECT_THROW(RunFramePipeline(1, 3, 100, stages), std::runtime_error);
    EXPECT_LE(reported, 4);
    // The two other slots may have started an item just before.
    EXPECT_LE(begunAfter, 2);
  }
}

}  // namespace
}  // namespace vblur::host
