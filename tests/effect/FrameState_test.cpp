#include "effect/FrameState.h"

#include <array>

#include <gtest/gtest.h>

namespace vblur {
namespace {

void ExpectWindow(const StageWindow& window, std::array<std::int32_t, 4> expected) {
  EXPECT_EQ((std::array{window.x1, window.y1, window.x2, window.y2}), expected);
}

FrameState OfRegion(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1) {
  FrameState frame;
  frame.roiSet = 1;
  frame.regionX0 = x0;
  frame.regionY0 = y0;
  frame.regionX1 = x1;
  frame.regionY1 = y1;
  return frame;
}

TEST(FrameState, AFieldIsAPictureOfHalfTheHeight) {
  FrameState frame;
  for (const std::int32_t field : {1, 2}) {
    frame.SettleField(field);
    EXPECT_EQ(frame.fieldIndex, field);
    EXPECT_EQ(frame.fieldScale, 0.5f);
    EXPECT_TRUE(frame.RendersHalfHeight());
    EXPECT_EQ(frame.ProcessorField(), 0);
  }
  for (const std::int32_t whole : {0, 3, -1}) {
    frame.SettleField(whole);
    EXPECT_EQ(frame.fieldIndex, 0);
    EXPECT_EQ(frame.fieldScale, 1.0f);
    EXPECT_FALSE(frame.RendersHalfHeight());
  }
}

TEST(FrameState, AFieldOfRowsIsTheProcessorsMatter) {
  FrameState frame;
  frame.fieldMode = kFieldRows;
  for (const std::int32_t field : {0, 1, 2}) {
    frame.SettleField(field);
    EXPECT_EQ(frame.fieldScale, 1.0f);
    EXPECT_FALSE(frame.RendersHalfHeight());
    EXPECT_EQ(frame.ProcessorField(), field);
  }
}

TEST(FrameState, TheRegionWindowIsTheHostsRegion) {
  FrameState frame = OfRegion(-3, -5, 8, 9);
  ExpectWindow(*frame.RegionWindow(), {-3, -5, 8, 9});
  frame.SettleField(2);
  ExpectWindow(*frame.RegionWindow(), {-3, -2, 8, 4});
  frame.fieldMode = kFieldRows;
  frame.SettleField(2);
  ExpectWindow(*frame.RegionWindow(), {-3, -5, 8, 9});
  frame.roiSet = 0;
  EXPECT_FALSE(frame.RegionWindow().has_value());
}

TEST(FrameState, TheScaledWindowIsTheRegionInAnyCase) {
  FrameState frame = OfRegion(-3, -5, 8, 9);
  frame.roiSet = 0;
  ExpectWindow(frame.ScaledWindow(), {-3, -5, 8, 9});
  frame.SettleField(1);
  ExpectWindow(frame.ScaledWindow(), {-3, -2, 8, 4});
  // Rows become 32-bit floats first.
  frame.regionY1 = 16777217;
  frame.SettleField(0);
  ExpectWindow(frame.ScaledWindow(), {-3, -5, 8, 16777216});
}

TEST(FrameState, ACopyIsNotInterruptedWithItsSource) {
  FrameState frame = OfRegion(1, 2, 3, 4);
  frame.interrupt.interrupted = 1;
  const FrameState copy(frame);
  EXPECT_EQ(copy.regionX1, 3);
  EXPECT_EQ(copy.interrupt.interrupted, 0);
}

}  // namespace
}  // namespace vblur
