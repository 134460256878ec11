#include "image/HvInteruptable.h"

#include <gtest/gtest.h>

#include "tests/support/StopAfter.h"

namespace vblur::test {
namespace {

TEST(HvInteruptable, PollWithoutRecordOrCallbackContinues) {
  EXPECT_EQ(poll(nullptr), 0);
  HvInterruptRecord record;
  EXPECT_EQ(poll(&record), 0);
  EXPECT_EQ(record.interrupted, 0);
  EXPECT_EQ(record.state, 0);
}

TEST(HvInteruptable, PollAsksNoMoreOnceTheFrameIsOver) {
  StopAfter stop(2);
  EXPECT_EQ(poll(&stop.record), 0);
  EXPECT_EQ(poll(&stop.record), 0);
  EXPECT_EQ(poll(&stop.record), 1);
  EXPECT_EQ(poll(&stop.record), 1);
  EXPECT_EQ(stop.asked(), 3);
  EXPECT_EQ(stop.record.interrupted, 1);
  EXPECT_EQ(stop.record.state, StopAfter::kReason);
}

TEST(HvInteruptable, PollKeepsTheCodeOfAStopWithoutACallback) {
  HvInterruptRecord record;
  stopForMemory(&record);
  stopForMemory(nullptr);
  EXPECT_EQ(poll(&record), 1);
  EXPECT_EQ(record.state, 1000);
}

TEST(HvInteruptable, PollDoesNotTakeBackAnothersStop) {
  HvInterruptRecord record;
  // Another thread runs out of memory while this callback is deciding to go on.
  record.arm(&record, [](void* context, HvStateWord*) -> std::int32_t {
    static_cast<HvInterruptRecord*>(context)->stopForMemory();
    return 0;
  });
  poll(&record);
  EXPECT_EQ(record.interrupted, 1);
  EXPECT_EQ(record.state, 1000);
  EXPECT_EQ(poll(&record), 1);
}

TEST(HvInteruptable, PollContinuesOnceTheRecordIsArmedAgain) {
  HvInterruptRecord record;
  record.stopForMemory();
  record.arm(nullptr, nullptr);
  EXPECT_EQ(poll(&record), 0);
  EXPECT_EQ(record.state, 0);
}

}  // namespace
}  // namespace vblur::test
