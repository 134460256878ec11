// Every operation on whole pixels, in both forms and at both depths, against the model, and the special cases of
// operations that depend on the whole pixel.
#include <iterator>
#include <limits>

#include <gtest/gtest.h>

#include "tests/composite/Operations.h"

namespace vblur::test {
namespace {

template <class Pixel>
class BlendPixels : public testing::Test {};

TYPED_TEST_SUITE(BlendPixels, Depths, TypeNames);

// All triples of some levels as colours, with varying alpha.
template <class Pixel>
std::vector<Pixel> Grid() {
  std::vector<std::int32_t> levels;
  if (Pixel::kMax == 255) {
    levels = {0, 1, 60, 127, 128, 200, 254, 255};
  } else {
    levels = {-32768, -16384, -1, 0, 8191, 16384, 16385, 32767};
  }
  std::vector<Pixel> grid;
  for (const std::int32_t red : levels) {
    for (const std::int32_t green : levels) {
      for (const std::int32_t blue : levels) {
        grid.push_back(Make<Pixel>(red, green, blue, levels[grid.size() * 5 % levels.size()]));
      }
    }
  }
  return grid;
}

TYPED_TEST(BlendPixels, IntegerFormOnAGrid) {
  using Pixel = TypeParam;
  const std::vector<Pixel> grid = Grid<Pixel>();
  for (const auto& operation : kNamedOperations<Pixel>) {
    int wrong = 0;
    for (const Pixel& p : grid) {
      for (const Pixel& q : grid) {
        const auto expected = operation.modelOfIntegers(kDepth<Pixel>, ModelOf(p), ModelOf(q));
        wrong += operation.ofIntegers(p, q) != FromModel<Pixel>(expected);
      }
    }
    EXPECT_EQ(wrong, 0) << operation.name;
  }
}

TYPED_TEST(BlendPixels, IntegerFormOnRandomPixels) {
  using Pixel = TypeParam;
  for (const auto& operation : kNamedOperations<Pixel>) {
    Random random(7);
    int wrong = 0;
    for (int i = 0; i < 100000; ++i) {
      const Pixel p = RandomPixel<Pixel>(random);
      const Pixel q = RandomPixel<Pixel>(random);
      const auto expected = operation.modelOfIntegers(kDepth<Pixel>, ModelOf(p), ModelOf(q));
      wrong += operation.ofIntegers(p, q) != FromModel<Pixel>(expected);
    }
    EXPECT_EQ(wrong, 0) << operation.name;
  }
}

float RandomFloat(Random& random, float top) {
  constexpr float kExtreme[] = {0.0f,
                                -0.0f,
                                1.0f,
                                -1.0f,
                                2147483520.0f,
                                2147483648.0f,
                                -2147483648.0f,
                                -2147483904.0f,
                                3e9f,
                                -3e9f,
                                1e19f,
                                -1e30f,
                                1073741824.0f,
                                -1073741824.0f,
                                1e-40f,
                                std::numeric_limits<float>::infinity(),
                                -std::numeric_limits<float>::infinity(),
                                std::numeric_limits<float>::quiet_NaN(),
                                255.99f,
                                254.99f,
                                -0.5f,
                                765.0f,
                                16384.0f,
                                16385.0f,
                                49152.0f,
                                32767.0f};
  const auto pick = static_cast<std::size_t>(random.within(0, 159));
  if (pick < std::size(kExtreme)) return kExtreme[pick];
  return random.between(-2.0f * top, 6.0f * top);
}

TYPED_TEST(BlendPixels, FloatFormOnRandomAndExtremePixels) {
  using Pixel = TypeParam;
  const auto top = static_cast<float>(Pixel::kMax);
  for (const auto& operation : kNamedOperations<Pixel>) {
    Random random(11);
    int wrong = 0;
    for (int i = 0; i < 100000; ++i) {
      Rf p{};
      Rf q{};
      for (int c = 0; c < 4; ++c) {
        p[c] = RandomFloat(random, top);
        q[c] = RandomFloat(random, top);
      }
      const auto expected =
          operation.modelOfFloats(kDepth<Pixel>, {p.red, p.green, p.blue, p.alpha}, {q.red, q.green, q.blue, q.alpha});
      wrong += operation.ofFloats(p, q) != FromModel<Pixel>(expected);
    }
    EXPECT_EQ(wrong, 0) << operation.name;
  }
}

TYPED_TEST(BlendPixels, DarkenLeavesAlphaZero) {
  using Pixel = TypeParam;
  const Pixel dark = Make<Pixel>(1, 2, 3, 100);
  const Pixel light = Make<Pixel>(100, 100, 100, 100);
  EXPECT_EQ(Blend<Pixel>::Darken::ofIntegers(dark, light), Make<Pixel>(1, 2, 3, 0));
  EXPECT_EQ(Blend<Pixel>::Darken::ofIntegers(light, dark), Make<Pixel>(1, 2, 3, 0));
  EXPECT_EQ(Blend<Pixel>::Darken::ofFloats(widenedToFloat(light), widenedToFloat(dark)), Make<Pixel>(1, 2, 3, 0));
}

TYPED_TEST(BlendPixels, LightenTakesTheAlphaOfTheChosenPixel) {
  using Pixel = TypeParam;
  const Pixel dark = Make<Pixel>(1, 2, 3, 44);
  const Pixel light = Make<Pixel>(100, 100, 100, 77);
  EXPECT_EQ(Blend<Pixel>::Lighten::ofIntegers(dark, light), light);
  EXPECT_EQ(Blend<Pixel>::Lighten::ofIntegers(light, dark), light);
  EXPECT_EQ(Blend<Pixel>::Lighten::ofFloats(widenedToFloat(light), widenedToFloat(dark)), light);
}

TYPED_TEST(BlendPixels, ATieOfBrightnessGivesTheSecondPixel) {
  using Pixel = TypeParam;
  const Pixel p = Make<Pixel>(10, 20, 30, 40);
  const Pixel q = Make<Pixel>(30, 20, 10, 50);
  EXPECT_EQ(Blend<Pixel>::Darken::ofIntegers(p, q), Make<Pixel>(30, 20, 10, 0));
  EXPECT_EQ(Blend<Pixel>::Darken::ofFloats(widenedToFloat(p), widenedToFloat(q)), Make<Pixel>(30, 20, 10, 0));
  EXPECT_EQ(Blend<Pixel>::Lighten::ofIntegers(p, q), q);
  EXPECT_EQ(Blend<Pixel>::Lighten::ofFloats(widenedToFloat(p), widenedToFloat(q)), q);
}

TYPED_TEST(BlendPixels, HueOfAGreyGivesGreyOfTheOtherValue) {
  using Pixel = TypeParam;
  const Pixel grey = Make<Pixel>(90, 90, 90, 12);
  const Pixel coloured = Make<Pixel>(200, 100, 50, 255);
  EXPECT_EQ(Blend<Pixel>::Hue::ofIntegers(grey, coloured), Make<Pixel>(200, 200, 200, 12));
  EXPECT_EQ(Blend<Pixel>::Saturation::ofIntegers(coloured, grey), Make<Pixel>(90, 90, 90, 255));
}

TYPED_TEST(BlendPixels, FiniteAlphaIsLimitedLikeTheColours) {
  using Pixel = TypeParam;
  const Rf p = MakeFloat(100.0f, 50.0f, 20.0f, 1e6f);
  const Rf q = MakeFloat(20.0f, 60.0f, 90.0f, 0.0f);
  EXPECT_EQ(Blend<Pixel>::Chroma::ofFloats(p, q).alpha, Pixel::kMax);
  EXPECT_EQ(Blend<Pixel>::Luminance::ofFloats(p, q).alpha, Pixel::kMax);
  EXPECT_EQ(Blend<Pixel>::Hue::ofFloats(p, q).alpha, Pixel::kMax);
}

TEST(BlendPixelsAtOneDepth, HardLightThresholdIsThreeTimesOneAndNotAHalf) {
  const R16 at = Make<R16>(16384, 16384, 16384, 100);
  const R16 above = Make<R16>(16384, 16384, 16385, 100);
  const R16 q = Make<R16>(4096, 4096, 4096, 8192);
  // A sum of 49152 still multiplies, one more screens, alpha too.
  EXPECT_EQ(Blend<R16>::HardLight::ofIntegers(at, q), Make<R16>(8192, 8192, 8192, 100));
  EXPECT_EQ(Blend<R16>::HardLight::ofIntegers(above, q), Make<R16>(16384, 16384, 16384 + 2, 100));
  EXPECT_EQ(Blend<R8>::HardLight::ofFloats(MakeFloat(255, 255, 255, 255), MakeFloat(51, 51, 51, 51)),
            Make<R8>(102, 102, 102, 102));
  EXPECT_EQ(Blend<R8>::HardLight::ofFloats(MakeFloat(255, 255, 256, 255), MakeFloat(51, 51, 51, 51)),
            Make<R8>(255, 255, 255, 255));
}

TEST(BlendPixelsAtOneDepth, HardLightEqualsOverlayAtEightBits) {
  int different = 0;
  const std::vector<R8> grid = Grid<R8>();
  for (const R8& p : grid) {
    for (const R8& q : grid) {
      different += Blend<R8>::HardLight::ofIntegers(p, q) != Blend<R8>::Overlay::ofIntegers(p, q);
    }
  }
  EXPECT_EQ(different, 0);
}

TEST(BlendPixelsAtOneDepth, HardLightPartsFromOverlayWhereOnePixelIsBrighterThanThreeOnes) {
  const R16 bright = Make<R16>(20000, 20000, 20000, 16384);
  const R16 dim = Make<R16>(1000, 1000, 1000, 16384);
  EXPECT_EQ(Blend<R16>::HardLight::ofIntegers(bright, dim), Make<R16>(23176, 23176, 23176, 16384));
  EXPECT_EQ(Blend<R16>::Overlay::ofIntegers(bright, dim), Make<R16>(2441, 2441, 2441, 32767));
}

// 2 x 32768 x 32768 is 2^31 and wraps to -2^31, which is -131072 in the pixel's scale.
TEST(BlendPixelsAtOneDepth, HardLightSixteenBitDoubledProductWraps) {
  const R16 lowest = Make<R16>(-32768, -32768, -32768, -32768);
  EXPECT_EQ(Blend<R16>::HardLight::ofIntegers(lowest, lowest), lowest);
  EXPECT_EQ(Blend<R16>::Overlay::ofIntegers(lowest, lowest), lowest);
  EXPECT_EQ(Blend<R16>::HardLight::ofIntegers(Make<R16>(-32768, 0, 0, 0), Make<R16>(-32767, 0, 0, 0)).red, 32767);
}

TEST(BlendPixelsAtOneDepth, LuminanceNegativeColoursDoNotPass) {
  const R16 negative = Make<R16>(-20000, -20000, -20000, -7);
  EXPECT_EQ(Blend<R16>::Luminance::ofIntegers(negative, Make<R16>(0, 0, 0, 5)), Make<R16>(0, 0, 0, -7));
}

// The weights of Y sum to 4095/4096, so that white over itself is 254.
TEST(BlendPixelsAtOneDepth, LuminanceOfAWhitePictureOverItself) {
  const R8 white = Make<R8>(255, 255, 255, 9);
  EXPECT_EQ(Blend<R8>::Luminance::ofIntegers(white, white), Make<R8>(254, 254, 254, 9));
}

}  // namespace
}  // namespace vblur::test
