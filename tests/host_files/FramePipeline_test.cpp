#include "host/FramePipeline.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace vblur::host {
namespace {

TEST(FramePipeline, EveryItemPassesEveryStageInOrder) {
  for (const std::size_t slots : {1u, 2u, 3u, 7u}) {
    std::vector<std::int64_t> inSlot(slots, -1);
    std::vector<std::int64_t> rendered;
    std::vector<std::int64_t> written;
    FrameStages stages;
    stages.goesOn = [] { return true; };
    stages.read = [&](std::size_t slot, std::int64_t item) { inSlot[slot] = item; };
    stages.render = [&](std::size_t slot, std::int64_t item) {
      EXPECT_EQ(inSlot[slot], item);
      rendered.push_back(item);
    };
    stages.write = [&](std::size_t slot, std::int64_t item) {
      EXPECT_EQ(inSlot[slot], item);
      written.push_back(item);
    };
    RunFramePipeline(slots, 200, stages);
    ASSERT_EQ(rendered.size(), 200u);
    for (std::size_t i = 0; i < 200; ++i)
      EXPECT_EQ(rendered[i], static_cast<std::int64_t>(i));
    EXPECT_EQ(written, rendered);
  }
}

// All three stages meet while each holds another item; without overlap they would wait for ever.
TEST(FramePipeline, StagesOverlap) {
  std::mutex lock;
  std::condition_variable changed;
  int present = 0;
  bool met = false;
  const auto meet = [&] {
    std::unique_lock hold(lock);
    met = met || ++present == 3;
    changed.notify_all();
    changed.wait_for(hold, std::chrono::seconds(20), [&] { return met; });
    --present;
  };
  FrameStages stages;
  stages.goesOn = [] { return true; };
  stages.read = [&](std::size_t, std::int64_t item) {
    if (item == 2) meet();
  };
  stages.render = [&](std::size_t, std::int64_t item) {
    if (item == 1) meet();
  };
  stages.write = [&](std::size_t, std::int64_t item) {
    if (item == 0) meet();
  };
  RunFramePipeline(3, 3, stages);
  EXPECT_TRUE(met);
}

TEST(FramePipeline, NothingIsBegunOnceItShallEnd) {
  std::atomic<int> read = 0;
  int written = 0;
  FrameStages stages;
  stages.goesOn = [&] { return read < 5; };
  stages.read = [&](std::size_t, std::int64_t) { ++read; };
  stages.render = [](std::size_t, std::int64_t) {};
  stages.write = [&](std::size_t, std::int64_t) { ++written; };
  RunFramePipeline(3, 1000, stages);
  EXPECT_EQ(read, 5);
  EXPECT_EQ(written, 5);
}

TEST(FramePipeline, AnExceptionOfAnyStageEndsTheRun) {
  for (int thrower = 0; thrower < 3; ++thrower) {
    int written = 0;
    const auto stage = [&](int number) {
      return [&, number](std::size_t, std::int64_t item) {
        if (number == thrower && item == 4) throw std::runtime_error("broken");
        if (number == 2) ++written;
      };
    };
    FrameStages stages{stage(0), stage(1), stage(2), [] { return true; }};
    EXPECT_THROW(RunFramePipeline(3, 100, stages), std::runtime_error);
    EXPECT_LE(written, 4);
  }
}

}  // namespace
}  // namespace vblur::host
