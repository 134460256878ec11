#include "composite/MixCombiner.h"

#include <gtest/gtest.h>

namespace vblur::test {
namespace {

// The sum of the weights rounds to 1 in 32 bits; in 64 bits it would exceed 1.
TEST(MixCombiner, SumOfWeightsIsTestedInThirtyTwoBits) {
  MixCombiner<R16, Rf, 16384> mix;
  mix.weightA = 1.0f;
  mix.weightB = 5.9604645e-8f;
  EXPECT_FALSE(mix.limitsResult());
  mix.weightB = 1.1920929e-7f;
  EXPECT_TRUE(mix.limitsResult());
  mix.weightA = -0.5f;
  mix.weightB = 0.5f;
  EXPECT_TRUE(mix.limitsResult());
  mix.weightA = 0.5f;
  mix.weightB = -0.5f;
  EXPECT_TRUE(mix.limitsResult());
}

}  // namespace
}  // namespace vblur::test
