#include "composite/MixCombiner.h"

#include <gtest/gtest.h>

#include "tests/composite/FloatPixels.h"

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

using FloatMix = MixCombiner<Rf, Rf, 1>;

Rf MixedFloats(float weightA, float weightB, const Rf& a, const Rf& b) {
  HvTexture<Rf, Rf> first(1, 1);
  HvTexture<Rf, Rf> second(1, 1);
  *first.at(0, 0) = a;
  *second.at(0, 0) = b;
  FloatMix mix;
  mix.weightA = weightA;
  mix.weightB = weightB;
  mix.process(&first, &second, &first);
  return *first.at(0, 0);
}

TEST(MixCombiner, FloatsAreNeverLimited) {
  const Rf a = MakeFloat(2.0f, -1.0f, 0.5f, 1.0f);
  const Rf b = MakeFloat(4.0f, -4.0f, 0.25f, 0.0f);
  EXPECT_EQ(MixedFloats(0.5f, 0.5f, a, b), MakeFloat(3.0f, -2.5f, 0.375f, 0.5f));
  EXPECT_EQ(MixedFloats(-1.0f, 5.0f, a, b), MakeFloat(18.0f, -19.0f, 0.75f, -1.0f));
}

// The products are sums of powers of two that no float holds.
TEST(MixCombiner, FloatsAreRoundedOnce) {
  EXPECT_EQ(MixedFloats(1.0f + 0x1p-20f, -1.0f, MakeFloat(1.0f + 0x1p-20f, 0, 0, 0), MakeFloat(1.0f, 0, 0, 0)).red,
            0x1p-19f + 0x1p-40f);
}

TEST(MixCombiner, FloatsLieBetweenTheirPicturesWhenTheWeightsSumToOne) {
  forRandomCases(5000, [](Random& random) {
    const auto any = random.oneIn(3) ? &AnyFinite : &AnyCarried;
    const Rf a = FloatPixel(random, any);
    const Rf b = FloatPixel(random, any);
    const float m = random.between(0.0f, 1.0f) * random.oneOf({1.0f, 1e-3f, 1e-7f});
    ASSERT_TRUE(LiesBetween(MixedFloats(1.0f - m, m, a, b), a, b)) << m;
    ASSERT_EQ(MixedFloats(1.0f - m, m, a, a), a) << m;
    ASSERT_EQ(MixedFloats(1.0f, 0.0f, a, b), a);
    ASSERT_EQ(MixedFloats(0.0f, 1.0f, a, b), b);
  });
}

TEST(MixCombiner, FiniteFloatsStayFinite) {
  forRandomCases(5000, [](Random& random) {
    const Rf result =
        MixedFloats(AnyFinite(random), AnyFinite(random), FloatPixel(random, AnyFinite), FloatPixel(random, AnyFinite));
    ASSERT_TRUE(IsFinite(result)) << ::testing::PrintToString(result);
  });
}

}  // namespace
}  // namespace vblur::test
