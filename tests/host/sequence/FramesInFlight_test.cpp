#include "host/sequence/FramesInFlight.h"

#include <gtest/gtest.h>

namespace vblur::host {
namespace {

constexpr std::int64_t kMiB = 1 << 20;

SequenceLoad Load(std::int64_t frames, std::int64_t mebibytes, std::int32_t processors, std::int32_t asked = 0) {
  return {frames, mebibytes * kMiB, 1024 * kMiB, processors, asked};
}

void ExpectLanes(const SequenceLoad& load, std::int32_t frames, std::int32_t threads, std::int32_t slots) {
  const SequenceLanes lanes = FramesInFlight(load);
  EXPECT_EQ(lanes.frames, frames);
  EXPECT_EQ(lanes.threads, threads);
  EXPECT_EQ(lanes.slots, slots);
}

TEST(FramesInFlight, ASequenceTakesAFrameForEachProcessor) {
  ExpectLanes(Load(100, 10, 8), 8, 1, 10);
  ExpectLanes(Load(100, 10, 2), 2, 1, 4);
  ExpectLanes(Load(100, 10, 1), 1, 1, 3);
}

TEST(FramesInFlight, FewFramesTakeAllThreadsEach) {
  ExpectLanes(Load(1, 10, 8), 1, 8, 1);
  ExpectLanes(Load(2, 10, 8), 1, 8, 2);
  ExpectLanes(Load(8, 10, 8), 1, 8, 3);
  ExpectLanes(Load(9, 10, 8), 8, 1, 9);
}

TEST(FramesInFlight, KeepsToTheMemory) {
  // Ten frames fit 1024 MiB at 102 each, nine at 103.
  ExpectLanes(Load(100, 102, 8), 8, 1, 10);
  ExpectLanes(Load(100, 103, 8), 7, 1, 9);
  ExpectLanes(Load(100, 170, 8), 4, 1, 6);
  ExpectLanes(Load(100, 171, 8), 1, 8, 3);
  ExpectLanes(Load(100, 400, 8), 1, 8, 2);
  ExpectLanes(Load(100, 2000, 8), 1, 8, 1);
  ExpectLanes(Load(100, 0, 8), 8, 1, 10);
}

TEST(FramesInFlight, WhatIsAskedForIsDoneAsFarAsItFits) {
  ExpectLanes(Load(100, 2000, 8, 5), 1, 8, 1);
  ExpectLanes(Load(100, 300, 8, 5), 3, 8, 3);
  ExpectLanes(Load(100, 10, 8, 5), 5, 8, 7);
  ExpectLanes(Load(100, 10, 2, 16), 16, 1, 18);
  ExpectLanes(Load(3, 10, 2, 16), 3, 1, 3);
  ExpectLanes(Load(100, 10, 8, 1), 1, 8, 3);
}

TEST(FramesInFlight, KeepsToTheFilesThatMayBeOpen) {
  SequenceLoad load = Load(100, 10, 8);
  const auto expect = [&](std::int64_t files, std::int32_t frames, std::int32_t threads, std::int32_t slots) {
    load.files = files;
    SCOPED_TRACE(files);
    ExpectLanes(load, frames, threads, slots);
  };
  expect(1000, 8, 1, 10);
  expect(22, 8, 1, 10);
  expect(20, 7, 1, 9);
  expect(8, 1, 8, 3);
  expect(5, 1, 8, 1);
  expect(0, 1, 8, 1);
  load.asked = 8;
  expect(22, 8, 1, 10);
  expect(8, 3, 8, 3);
  expect(0, 1, 8, 1);
}

}  // namespace
}  // namespace vblur::host
