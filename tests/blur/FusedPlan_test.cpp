// The tiles of both passes in one.
#include "blur/FusedPlan.h"

#include <gtest/gtest.h>

#include "blur/FuseBand.h"

namespace vblur::test {
namespace {

// A picture of 3840 x 2160 pixels of 8 bits, 16 to a group.
FusedSize sizeOf(float radius, std::int32_t threads) {
  const BoxConstants box = boxConstants(radius);
  const FusedAxis x(box, kFusedColumns, false);
  const FusedAxis y(box, kFusedRows, false);
  return {240,
          2160,
          16,
          x.leadBlocks * kFusedColumns,
          y.leadBlocks * kFusedRows,
          static_cast<std::size_t>(y.ring + 2 * y.taps) * 64 + kFusedSums,
          std::size_t{1} << 20,
          threads};
}

TEST(FusedPlan, HasTilesThatFitTheBudget) {
  EXPECT_EQ(planFused(sizeOf(3.0f, 1)).columns, 1);
  EXPECT_EQ(planFused(sizeOf(10.0f, 1)).columns, 2);
  EXPECT_EQ(planFused(sizeOf(33.0f, 1)).columns, 4);
  EXPECT_EQ(planFused(sizeOf(33.0f, 1)).rows, 1);
}

TEST(FusedPlan, GivesEachThreadAShare) {
  for (const std::int32_t threads : {2, 3, 8}) {
    const FusedPlan plan = planFused(sizeOf(3.0f, threads));
    EXPECT_EQ(plan.columns * plan.rows % threads, 0) << threads;
    EXPECT_TRUE(plan.pays) << threads;
  }
}

TEST(FusedPlan, PaysForSmallRadii) {
  EXPECT_TRUE(planFused(sizeOf(0.5f, 1)).pays);
  EXPECT_TRUE(planFused(sizeOf(33.3f, 1)).pays);
  EXPECT_FALSE(planFused(sizeOf(100.0f, 1)).pays);
  EXPECT_FALSE(planFused(sizeOf(333.0f, 1)).pays);
}

TEST(FusedPlan, PaysForFewerWhereTwoPassesCostLess) {
  FusedSize size = sizeOf(33.0f, 1);
  EXPECT_TRUE(planFused(size).pays);
  size.costOfTwoPasses = 2.1;
  EXPECT_FALSE(planFused(size).pays);
  size = sizeOf(0.5f, 1);
  size.costOfTwoPasses = 2.1;
  EXPECT_TRUE(planFused(size).pays);
}

}  // namespace
}  // namespace vblur::test
