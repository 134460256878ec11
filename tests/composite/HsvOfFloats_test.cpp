#include "composite/HsvOfFloats.h"

#include <cmath>

#include <gtest/gtest.h>

#include "tests/composite/FloatPixels.h"

namespace vblur::test {
namespace {

Rf Colour(float red, float green, float blue) {
  return MakeFloat(red, green, blue, 0.0f);
}

TEST(HsvOfFloats, TakesEachPartOfAnotherPixel) {
  const Rf hue = Colour(0.0f, 1.0f, 0.5f);
  const Rf saturation = Colour(0.5f, 0.5f, 0.25f);
  const Rf value = Colour(4.0f, 4.0f, 1.0f);
  // Saturation 0.5 of a value of 4.
  EXPECT_EQ(withHueSaturationValue(hue, saturation, value), Colour(2.0f, 4.0f, 3.0f));
}

TEST(HsvOfFloats, PrimariesAndTheirMixtures) {
  const Rf grey = Colour(0.5f, 0.5f, 0.5f);
  const Rf pure = Colour(0.0f, 0.0f, 1.0f);
  for (int corner = 1; corner < 7; ++corner) {
    const auto of = [&](int bit, float v) { return (corner & bit) != 0 ? v : 0.0f; };
    const Rf hue = Colour(of(1, 3.0f), of(2, 3.0f), of(4, 3.0f));
    EXPECT_EQ(withHueSaturationValue(hue, pure, grey), Colour(of(1, 0.5f), of(2, 0.5f), of(4, 0.5f))) << corner;
  }
}

TEST(HsvOfFloats, GreyHasNeitherHueNorSaturation) {
  const Rf red = Colour(1.0f, 0.0f, 0.0f);
  for (const float level : {0.0f, 0.25f, 1.0f, 7.0f, -2.0f}) {
    const Rf grey = Colour(level, level, level);
    EXPECT_EQ(withHueSaturationValue(grey, red, red), Colour(1.0f, 1.0f, 1.0f));
    EXPECT_EQ(withHueSaturationValue(red, grey, red), Colour(1.0f, 1.0f, 1.0f));
    EXPECT_EQ(withHueSaturationValue(grey, grey, grey), grey);
  }
  const Rf black{};
  EXPECT_EQ(withHueSaturationValue(red, red, black), black);
  EXPECT_EQ(withHueSaturationValue(black, black, red), Colour(1.0f, 1.0f, 1.0f));
}

TEST(HsvOfFloats, TheValueOfBlackIsPlusZero) {
  const Rf red = Colour(1.0f, 0.0f, 0.0f);
  for (int corner = 0; corner < 8; ++corner) {
    const auto of = [&](int bit) { return (corner & bit) != 0 ? -0.0f : 0.0f; };
    const Rf black = Colour(of(1), of(2), of(4));
    for (const Rf& result : {withHueSaturationValue(black, red, black), withHueSaturationValue(red, red, black)}) {
      EXPECT_EQ(result, Colour(0.0f, 0.0f, 0.0f)) << corner;
      EXPECT_FALSE(std::signbit(result.red) || std::signbit(result.green) || std::signbit(result.blue)) << corner;
    }
  }
}

// Heights of 2 and 0.5: black is the ground of a pixel without negative colours.
TEST(HsvOfFloats, NegativeColoursHaveASaturationOfOne) {
  const Rf negative = Colour(1.0f, -1.0f, 0.0f);
  const Rf positive = Colour(0.5f, 0.5f, 0.25f);
  EXPECT_EQ(withHueSaturationValue(negative, negative, positive), Colour(0.5f, 0.0f, 0.25f));
  EXPECT_EQ(withHueSaturationValue(positive, positive, negative), Colour(1.0f, 1.0f, 0.0f));
  const Rf below = Colour(-1.0f, -2.0f, -3.0f);
  EXPECT_EQ(withHueSaturationValue(below, below, positive), Colour(0.5f, 0.25f, 0.0f));
  EXPECT_EQ(withHueSaturationValue(positive, positive, below), Colour(-1.0f, -1.0f, -2.0f));
}

// A value just above 0 over negative colours would have an enormous saturation.
TEST(HsvOfFloats, NothingIsStretchedBeyondTheValuesHeight) {
  forRandomCases(5000, [](Random& random) {
    const auto any = random.oneIn(3) ? &AnyFinite : &AnyCarried;
    const auto pixel = [&] {
      Rf p = FloatPixel(random, any);
      for (int c = 0; c < 4; ++c)
        p[c] = clampTo(p[c], -0x1p60f, 0x1p60f);
      return p;
    };
    const Rf value = pixel();
    const Rf result = withHueSaturationValue(pixel(), pixel(), value);
    const float most = std::max({value.red, value.green, value.blue});
    const float least = std::min({value.red, value.green, value.blue, 0.0f});
    ASSERT_EQ(std::max({result.red, result.green, result.blue}), most) << ::testing::PrintToString(value);
    // But for the rounding of the height.
    ASSERT_GE(std::min({result.red, result.green, result.blue}), least - std::max(most, -least) * 0x1p-50f)
        << ::testing::PrintToString(value);
  });
}

// Its least colour is 0 exactly, not the rest of a rounding.
TEST(HsvOfFloats, APureColourStaysPure) {
  forRandomCases(5000, [](Random& random) {
    const auto pure = [&] { return Colour(random.between(0.1f, 3.0f), 0.0f, random.between(0.0f, 3.0f)); };
    const Rf value = FloatPixel(random, [](Random& any) { return any.between(0.0f, 8.0f); });
    const Rf result = withHueSaturationValue(pure(), pure(), value);
    ASSERT_EQ(result.green, 0.0f);
    ASSERT_EQ(std::max(result.red, result.blue), std::max({value.red, value.green, value.blue}));
  });
}

TEST(HsvOfFloats, EqualPixelsComeBackToTheLastBit) {
  forRandomCases(5000, [](Random& random) {
    const auto any = random.oneIn(3) ? &AnyFinite : &AnyCarried;
    const Rf p = FloatPixel(random, any);
    ASSERT_EQ(withHueSaturationValue(p, p, p), withAlpha(p, 0.0f));
  });
}

}  // namespace
}  // namespace vblur::test
