// The blend methods on pixels of floats: inside 0..1, below and above, with gains and blends, and beside integers.
#include <array>
#include <cmath>

#include <gtest/gtest.h>

#include "composite/HvMerge.h"
#include "tests/composite/FloatPixels.h"
#include "tests/composite/MergeKernels.h"

namespace vblur::test {
namespace {

Rf Merged(std::int32_t method, const Rf& a, const Rf& b) {
  return MergedPixel(method, 0.5f, 1.0f, 1.0f, a, b);
}

constexpr bool MixesOperands(std::int32_t method) {
  return method <= kMergeLighten;
}

TEST(FloatMerges, InsideZeroToOne) {
  // Both colours sum to 1.5: a mean of one half, and a tie of brightness, which gives b.
  const Rf a = MakeFloat(0.5f, 0.25f, 0.75f, 0.5f);
  const Rf b = MakeFloat(0.25f, 0.5f, 0.75f, 1.0f);
  EXPECT_EQ(Merged(kMergeScreen, a, b), MakeFloat(0.625f, 0.625f, 0.9375f, 1.0f));
  EXPECT_EQ(Merged(kMergeMultiply, a, b), MakeFloat(0.125f, 0.125f, 0.5625f, 0.5f));
  EXPECT_EQ(Merged(kMergeAdd, a, b), MakeFloat(0.75f, 0.75f, 1.5f, 1.5f));
  EXPECT_EQ(Merged(kMergeSubtract, a, b), MakeFloat(0.25f, -0.25f, 0.0f, -0.5f));
  EXPECT_EQ(Merged(kMergeDifference, a, b), MakeFloat(0.25f, 0.25f, 0.0f, 0.5f));
  EXPECT_EQ(Merged(kMergeAddOver, a, b), MakeFloat(0.75f, 0.375f, 1.125f, 1.5f));
  EXPECT_EQ(Merged(kMergeAddUnder, a, b), MakeFloat(0.375f, 0.75f, 1.125f, 1.5f));
  EXPECT_EQ(Merged(kMergeHardLight, a, b), MakeFloat(0.25f, 0.25f, 1.125f, 1.0f));
  EXPECT_EQ(Merged(kMergeOverlay, a, b), MakeFloat(0.25f, 0.25f, 1.125f, 1.0f));
  EXPECT_EQ(Merged(kMergeDarken, a, b), MakeFloat(0.25f, 0.5f, 0.75f, 0.0f));
  EXPECT_EQ(Merged(kMergeLighten, a, b), b);
  const Rf darker = MakeFloat(0.25f, 0.25f, 0.5f, 0.25f);
  EXPECT_EQ(Merged(kMergeDarken, darker, b), MakeFloat(0.25f, 0.25f, 0.5f, 0.0f));
  EXPECT_EQ(Merged(kMergeLighten, b, darker), b);
}

TEST(FloatMerges, HueSaturationAndValueInsideZeroToOne) {
  const Rf orange = MakeFloat(1.0f, 0.5f, 0.0f, 0.25f);
  EXPECT_EQ(Merged(kMergeHue, orange, MakeFloat(0.25f, 0.25f, 0.75f, 1.0f)), MakeFloat(0.75f, 0.5f, 0.25f, 0.25f));
  EXPECT_EQ(Merged(kMergeSaturation, MakeFloat(1.0f, 0.5f, 0.5f, 0.5f), MakeFloat(0.5f, 0.25f, 0.0f, 1.0f)),
            MakeFloat(0.5f, 0.375f, 0.25f, 0.5f));
  EXPECT_EQ(Merged(kMergeValue, MakeFloat(0.125f, 0.25f, 0.0f, 0.75f), orange), MakeFloat(0.25f, 0.125f, 0.0f, 0.75f));
  EXPECT_EQ(Merged(kMergeColour, orange, MakeFloat(0.125f, 0.25f, 0.0f, 0.75f)), MakeFloat(0.25f, 0.125f, 0.0f, 0.25f));
}

// Luminance moves the colour differences alone, Chroma the luminance alone.
TEST(FloatMerges, LuminanceAndChromaChangeTheFirstByTheDifference) {
  const Rf p = MakeFloat(0.3f, 0.6f, 4.0f, 0.5f);
  const Rf q = MakeFloat(-0.2f, 0.9f, 0.1f, 1.0f);
  const auto u = [](const Rf& c) { return c.blue * 0.4364f - (c.green * 0.2891f + c.red * 0.1473f); };
  const auto v = [](const Rf& c) { return c.red * 0.6149f - c.green * 0.5145f - c.blue * 0.1004f; };
  const auto y = [](const Rf& c) { return c.red * 0.2989f + c.green * 0.5866f + c.blue * 0.1144f; };
  const float du = u(q) - u(p);
  const float dv = v(q) - v(p);
  EXPECT_EQ(Merged(kMergeLuminance, p, q),
            MakeFloat(p.red + (du * 0.00014135384f + dv * 1.1401706f), p.green + (-du * 0.3958304f - dv * 0.5809656f),
                      p.blue + (du * 2.0292995f - dv * 0.0000229211f), p.alpha));
  const float dy = y(q) - y(p);
  EXPECT_EQ(Merged(kMergeChroma, p, q),
            MakeFloat(p.red + dy * 1.0001f, p.green + dy * 1.0001f, p.blue + dy * 1.0001001f, p.alpha));
}

// a + b - ab falls again above 1.0: there the greater stands.
TEST(FloatMerges, ScreenNeverDarkens) {
  const Rf bright = MakeFloat(2.0f, 4.0f, 1.0f, 1.5f);
  EXPECT_EQ(Merged(kMergeScreen, bright, MakeFloat(0.5f, 2.0f, 0.25f, 1.0f)), MakeFloat(2.0f, 4.0f, 1.0f, 1.5f));
  EXPECT_EQ(Merged(kMergeScreen, MakeFloat(0.5f, 2.0f, 0.25f, 1.0f), bright), MakeFloat(2.0f, 4.0f, 1.0f, 1.5f));
  EXPECT_EQ(Merged(kMergeScreen, bright, MakeFloat(-8.0f, -1.0f, -1.0f, -1.0f)), MakeFloat(2.0f, 4.0f, 1.0f, 1.5f));
  EXPECT_EQ(Merged(kMergeScreen, MakeFloat(-1.0f, -0.5f, 0.0f, 0.0f), MakeFloat(-1.0f, 0.5f, -0.5f, 0.0f)),
            MakeFloat(-3.0f, 0.25f, -0.5f, 0.0f));
  forRandomCases(2000, [](Random& random) {
    const Rf a = FloatPixel(random, AnyCarried);
    Rf b = FloatPixel(random, AnyCarried);
    for (int c = 0; c < 3; ++c)
      b[c] = std::fabs(b[c]);
    const Rf screened = Merged(kMergeScreen, a, b);
    for (int c = 0; c < 3; ++c) {
      // But for the rounding of a + b.
      const float least = a[c] - std::fabs(a[c]) * 0x1p-23f - 0x1p-23f;
      ASSERT_GE(screened[c], b[c] > 1.0f ? std::max(a[c], b[c]) : least) << a[c] << ' ' << b[c];
    }
  });
}

TEST(FloatMerges, MultiplyKeepsDarkerThanBlackDark) {
  EXPECT_EQ(Merged(kMergeMultiply, MakeFloat(4.0f, -0.5f, -0.5f, -0.5f), MakeFloat(2.0f, -0.5f, 4.0f, -0.25f)),
            MakeFloat(8.0f, -0.25f, -2.0f, -0.5f));
  EXPECT_EQ(Merged(kMergeMultiply, MakeFloat(0.0f, -0.5f, 0.0f, 2.0f), MakeFloat(-0.5f, 0.0f, 3.0f, 3.0f)),
            MakeFloat(0.0f, 0.0f, 0.0f, 2.0f));
}

TEST(FloatMerges, SumsAndDifferencesHaveNoEnds) {
  const Rf a = MakeFloat(100.0f, -2.0f, 1.0f, 0.5f);
  const Rf b = MakeFloat(50.0f, 1.0f, -3.0f, 1.0f);
  EXPECT_EQ(Merged(kMergeAdd, a, b), MakeFloat(150.0f, -1.0f, -2.0f, 1.5f));
  EXPECT_EQ(Merged(kMergeSubtract, a, b), MakeFloat(50.0f, -3.0f, 4.0f, -0.5f));
  EXPECT_EQ(Merged(kMergeDifference, a, b), MakeFloat(50.0f, 3.0f, 4.0f, 0.5f));
}

// A mean of b below -1.0 takes a to 0.
TEST(FloatMerges, AddOverNeverTurnsTheSign) {
  const Rf a = MakeFloat(2.0f, -1.0f, 0.5f, 1.0f);
  EXPECT_EQ(Merged(kMergeAddOver, a, MakeFloat(9.0f, 0.0f, 0.0f, 1.0f)), MakeFloat(8.0f, -4.0f, 2.0f, 2.0f));
  EXPECT_EQ(Merged(kMergeAddOver, a, MakeFloat(0.0f, -1.5f, 0.0f, 1.0f)), MakeFloat(1.0f, -0.5f, 0.25f, 2.0f));
  EXPECT_EQ(Merged(kMergeAddOver, a, MakeFloat(-9.0f, 0.0f, 0.0f, 1.0f)), MakeFloat(0.0f, 0.0f, 0.0f, 2.0f));
  EXPECT_EQ(Merged(kMergeAddUnder, MakeFloat(-9.0f, 0.0f, 0.0f, 1.0f), a), MakeFloat(0.0f, 0.0f, 0.0f, 2.0f));
}

TEST(FloatMerges, HardLightScreensAboveThreeOnes) {
  const Rf q = MakeFloat(0.5f, 1.0f, 4.0f, 0.5f);
  EXPECT_EQ(Merged(kMergeHardLight, MakeFloat(1.0f, 1.0f, 1.0f, 0.5f), q), MakeFloat(1.0f, 2.0f, 8.0f, 0.5f));
  EXPECT_EQ(Merged(kMergeHardLight, MakeFloat(2.0f, 2.0f, 2.0f, 0.5f), q), MakeFloat(3.0f, 3.0f, 7.0f, 0.5f));
  EXPECT_EQ(Merged(kMergeOverlay, q, MakeFloat(2.0f, 2.0f, 2.0f, 0.5f)), MakeFloat(3.0f, 3.0f, 7.0f, 0.5f));
  EXPECT_EQ(Merged(kMergeOverlay, q, MakeFloat(1.0f, 1.0f, 1.0f, 0.5f)), MakeFloat(1.0f, 2.0f, 8.0f, 0.5f));
  EXPECT_EQ(Merged(kMergeHardLight, MakeFloat(-0.5f, -0.5f, 1.0f, 0.0f), MakeFloat(-0.5f, 0.5f, -1.0f, 0.0f)),
            MakeFloat(-0.5f, -0.5f, -2.0f, 0.0f));
}

TEST(FloatMerges, BrightnessCountsBeyondTheEnds) {
  const Rf dark = MakeFloat(-4.0f, 1.0f, 1.0f, 0.25f);
  const Rf light = MakeFloat(8.0f, 0.0f, -1.0f, 0.5f);
  EXPECT_EQ(Merged(kMergeDarken, light, dark), MakeFloat(-4.0f, 1.0f, 1.0f, 0.0f));
  EXPECT_EQ(Merged(kMergeLighten, dark, light), light);
}

// To the last bit, whatever the blend: the methods that choose parts of a pixel choose them of one.
TEST(FloatMerges, EqualPicturesComeBack) {
  forRandomCases(500, [](Random& random) {
    const Rf p = FloatPixel(random, AnyCarried);
    for (const std::int32_t method : kMergeMethods) {
      if (!MixesOperands(method)) continue;
      const Rf expected = method == kMergeDarken ? withAlpha(p, 0.0f) : p;
      for (const float blend : {0.5f, 0.0f, 0.3f, 0.7f, 1.0f, random.between(0.0f, 1.0f)})
        ASSERT_EQ(MergedPixel(method, blend, 1.0f, 1.0f, p, p), expected) << method << " at " << blend;
    }
  });
}

TEST(FloatMerges, EndsOfABlendAreThePicturesExactly) {
  forRandomCases(500, [](Random& random) {
    const Rf a = FloatPixel(random, AnyCarried);
    const Rf b = FloatPixel(random, AnyCarried);
    for (const std::int32_t method : kMergeMethods) {
      const auto expected = [&](const Rf& p) { return method == kMergeDarken ? withAlpha(p, 0.0f) : p; };
      ASSERT_EQ(MergedPixel(method, 0.0f, 1.0f, 1.0f, a, b), expected(a)) << method;
      ASSERT_EQ(MergedPixel(method, 1.0f, 1.0f, 1.0f, a, b), expected(b)) << method;
    }
  });
}

TEST(FloatMerges, ABlendLiesBetweenTheResultAndAPicture) {
  forRandomCases(500, [](Random& random) {
    const Rf a = FloatPixel(random, AnyCarried);
    const Rf b = FloatPixel(random, AnyCarried);
    const float blend = random.between(0.0f, 1.0f);
    for (const std::int32_t method : kMergeMethods) {
      if (MixesOperands(method)) continue;
      const Rf mixed = MergedPixel(method, blend, 1.0f, 1.0f, a, b);
      ASSERT_TRUE(LiesBetween(mixed, Merged(method, a, b), blend < 0.5f ? a : b)) << method << " at " << blend;
    }
  });
}

TEST(FloatMerges, ADifferenceOfZerosIsNotNegative) {
  const Rf zeros = MakeFloat(-0.0f, 0.0f, -0.0f, 0.0f);
  const Rf others = MakeFloat(0.0f, -0.0f, -0.0f, 0.0f);
  EXPECT_EQ(ModelOf(Merged(kMergeDifference, zeros, others)), ModelOf(Rf{}));
}

TEST(FloatMerges, GainsAndBlends) {
  const Rf a = MakeFloat(0.5f, 0.25f, 0.75f, 0.5f);
  const Rf b = MakeFloat(0.25f, 0.5f, 0.75f, 1.0f);
  EXPECT_EQ(MergedPixel(kMergeAdd, 0.5f, 2.0f, -4.0f, a, b), MakeFloat(0.0f, -1.5f, -1.5f, -3.0f));
  // Half the sum and half of a picture, with its gain.
  EXPECT_EQ(MergedPixel(kMergeAdd, 0.25f, 2.0f, 4.0f, a, b), MakeFloat(1.5f, 1.5f, 3.0f, 3.0f));
  EXPECT_EQ(MergedPixel(kMergeAdd, 0.75f, 2.0f, 4.0f, a, b), MakeFloat(1.5f, 2.25f, 3.75f, 4.5f));
  // The operands are a and the even mix, the even mix and b.
  EXPECT_EQ(MergedPixel(kMergeLighten, 0.25f, 1.0f, 2.0f, a, b), MakeFloat(0.5f, 0.625f, 1.125f, 1.25f));
  EXPECT_EQ(MergedPixel(kMergeDarken, 0.75f, 1.0f, 2.0f, a, b), MakeFloat(0.5f, 0.625f, 1.125f, 0.0f));
  EXPECT_EQ(MergedPixel(kMergeValue, 0.5f, 0.5f, 1.0f, a, MakeFloat(0.75f, 0.0f, 0.0f, 1.0f)),
            MakeFloat(0.375f, 0.0f, 0.0f, 0.25f));
}

TEST(FloatMerges, FirstAlphaTakesSecondGainBelowOneHalf) {
  const Rf a = MakeFloat(0.1f, 0.2f, 0.3f, 1.0f);
  const Rf b = MakeFloat(0.4f, 0.5f, 0.6f, 2.0f);
  for (const std::int32_t method :
       {kMergeLuminance, kMergeChroma, kMergeHue, kMergeSaturation, kMergeValue, kMergeColour}) {
    EXPECT_EQ(MergedPixel(method, 0.25f, 2.0f, 0.5f, a, b).alpha, 0.5f) << method;
    EXPECT_EQ(MergedPixel(method, 0.5f, 2.0f, 0.5f, a, b).alpha, 2.0f) << method;
    EXPECT_EQ(MergedPixel(method, 0.75f, 2.0f, 0.5f, a, b).alpha, 1.5f) << method;
  }
}

// Within 1/255 of 1 and of one half, where integers take the plain form.
TEST(FloatMerges, SmallGainsAndBlendsAreInForce) {
  const Rf a = MakeFloat(0.5f, 0.5f, 0.5f, 0.5f);
  EXPECT_EQ(MergedPixel(kMergeAdd, 0.5f, 1.0009765625f, 1.0f, a, a),
            MakeFloat(1.00048828125f, 1.00048828125f, 1.00048828125f, 1.00048828125f));
  EXPECT_EQ(MergedPixel(kMergeAdd, 0.4990234375f, 1.0f, 1.0f, a, a).red, 0.9990234375f);
  EXPECT_EQ(MergedPixel(kMergeAdd, 0.5009765625f, 1.0f, 1.0f, a, a).red, 0.9990234375f);
  HvMerge<Rf, Rf, 1> merge;
  merge.setBlend(0.5f);
  EXPECT_EQ(merge.form(), MergeForm::Gained);
  merge.setBlend(0.499f);
  EXPECT_EQ(merge.form(), MergeForm::TowardsA);
}

TEST(FloatMerges, FiniteOperandsGiveFiniteResults) {
  forRandomCases(4000, [](Random& random) {
    const auto any = random.oneIn(2) ? &AnyFinite : &AnyCarried;
    const Rf a = FloatPixel(random, any);
    const Rf b = FloatPixel(random, any);
    const auto gain = [&] { return random.oneIn(2) ? 1.0f : AnyFinite(random); };
    const float gainA = gain();
    const float gainB = gain();
    const float blend = random.oneIn(2) ? 0.5f : random.between(0.0f, 1.0f);
    for (const std::int32_t method : kMergeMethods) {
      const Rf result = MergedPixel(method, blend, gainA, gainB, a, b);
      ASSERT_TRUE(IsFinite(result)) << method << " of " << ::testing::PrintToString(a) << " and "
                                    << ::testing::PrintToString(b) << " gives " << ::testing::PrintToString(result);
    }
  });
}

// How many steps of an integer depth a method may lie from the float result, inside 0..1. A truncation costs up to one
// step. Luminance and Chroma truncate three terms, of which one is doubled; their weights are multiples of 1/4096,
// which differ from those of floats by up to 1/8000. The HSV of integers truncates up to four times in a row.
template <class Pixel>
constexpr float Steps(std::int32_t method) {
  if (method == kMergeLuminance || method == kMergeChroma) return sizeof(Pixel) == 4 ? 5.0f : 20.0f;
  return method >= kMergeHue && method <= kMergeColour ? 4.0f : 1.0f;
}

template <class Pixel>
class FloatMergesBesideIntegers : public testing::Test {};

TYPED_TEST_SUITE(FloatMergesBesideIntegers, Depths, TypeNames);

TYPED_TEST(FloatMergesBesideIntegers, LieWithinTheTruncationOfEachMethod) {
  using Pixel = TypeParam;
  constexpr auto kOne = static_cast<float>(Pixel::kOne);
  const auto inOnes = [](const Pixel& p) { return scaledBy(widenedToFloat(p), 1.0f / kOne); };
  forRandomCases(3000, [&](Random& random) {
    const auto pixel = [&] {
      const auto any = [&] { return random.oneIn(8) ? random.oneOf({0, Pixel::kOne}) : random.within(0, Pixel::kOne); };
      return Make<Pixel>(any(), any(), any(), any());
    };
    const Pixel a = pixel();
    const Pixel b = pixel();
    // A tie in integers may be none in floats.
    if (colourSum(a) == colourSum(b)) return;
    for (const std::int32_t method : kMergeMethods) {
      const Pixel have = MergedPixel(method, 0.5f, 1.0f, 1.0f, a, b);
      const Rf result = MergedPixel(method, 0.5f, 1.0f, 1.0f, inOnes(a), inOnes(b));
      const bool yuv = method == kMergeLuminance || method == kMergeChroma;
      const auto low = static_cast<float>(yuv ? 0 : Pixel::kMin);
      for (int c = 0; c < 4; ++c) {
        const float want = clampTo(result[c] * kOne, low, static_cast<float>(Pixel::kMax));
        ASSERT_LE(std::fabs(static_cast<float>(have[c]) - want), Steps<Pixel>(method))
            << method << ", component " << c << " of " << ::testing::PrintToString(a) << " and "
            << ::testing::PrintToString(b);
      }
    }
  });
}

// With gains and blends each method mixes what it mixes in integers, one step more apart.
TYPED_TEST(FloatMergesBesideIntegers, TakeGainsAndBlendsAlike) {
  using Pixel = TypeParam;
  constexpr auto kOne = static_cast<float>(Pixel::kOne);
  forRandomCases(1000, [&](Random& random) {
    const auto pixel = [&] {
      const auto any = [&] { return random.within(Pixel::kOne / 8, Pixel::kOne / 3); };
      return Make<Pixel>(any(), any(), any(), any());
    };
    const Pixel a = pixel();
    const Pixel b = pixel();
    const Rf wideA = scaledBy(widenedToFloat(a), 1.0f / kOne);
    const Rf wideB = scaledBy(widenedToFloat(b), 1.0f / kOne);
    const float blend = static_cast<float>(random.within(0, 16)) / 16.0f;
    const float gain = random.oneOf({1.0f, 0.5f, 1.5f});
    for (const std::int32_t method : kMergeMethods) {
      // Beyond the ends, and beside a choice between two pixels, clamps and ties decide. Near to grey a truncated
      // operand has another hue.
      if (method == kMergeSubtract || method == kMergeDarken || method == kMergeLighten) continue;
      if (method == kMergeHue || method == kMergeSaturation) continue;
      const Pixel have = MergedPixel(method, blend, gain, 1.0f, a, b);
      const Rf result = MergedPixel(method, blend, gain, 1.0f, wideA, wideB);
      for (int c = 0; c < 4; ++c) {
        const float want = clampTo(result[c] * kOne, 0.0f, static_cast<float>(Pixel::kMax));
        ASSERT_LE(std::fabs(static_cast<float>(have[c]) - want), Steps<Pixel>(method) + 1.0f)
            << method << " at " << blend << ", gain " << gain << ", component " << c << " of "
            << ::testing::PrintToString(a) << " and " << ::testing::PrintToString(b);
      }
    }
  });
}

}  // namespace
}  // namespace vblur::test
