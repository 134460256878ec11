// Reflected components by exact values.
#include "blur/SubtractCombiner.h"

#include <gtest/gtest.h>

namespace vblur::test {
namespace {

TEST(SubtractCombiner, ReflectsAndLimitsToTheType) {
  using Eight = SubtractCombiner<R8, Ri, 255>;
  using Sixteen = SubtractCombiner<R16, Ri, 32767>;
  EXPECT_EQ(Eight::reflected(200, 100), 255);
  EXPECT_EQ(Eight::reflected(50, 100), 0);
  EXPECT_EQ(Eight::reflected(100, 90), 110);
  EXPECT_EQ(Sixteen::reflected(20000, 10000), 30000);
  EXPECT_EQ(Sixteen::reflected(20000, -8000), 32767);
  EXPECT_EQ(Sixteen::reflected(-20000, 8000), -32768);
  for (int a = -32768; a <= 32767; a += 13)
    ASSERT_EQ(Sixteen::reflected(a, a), a);
}

}  // namespace
}  // namespace vblur::test
