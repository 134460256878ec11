// What the blur on floats is for: nothing is cut off, flat areas stay, and a part equals the whole.
#include <bit>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "blur/FuzzSampler.h"
#include "tests/blur/RandomPictures.h"

namespace vblur::test {
namespace {

using FloatFrame = HvTexture<Rf, Rf>;
using FloatSampler = FuzzSampler<Rf, Rf, 1>;

void fill(FloatFrame& frame, const Rf& pixel) {
  for (int y = 0; y < frame.height(); ++y) {
    for (int x = 0; x < frame.width(); ++x)
      *frame.at(x, y) = pixel;
  }
}

void blur(FloatFrame& source, FloatFrame& result, float radius, std::int32_t mode = kFuzzRGBA,
          std::int32_t method = kFuzzBlur) {
  FloatSampler sampler;
  sampler.mode = mode;
  sampler.method = method;
  sampler.sizeX = sampler.sizeY = radius;
  sampler.process(&source, &result);
}

bool sameBits(const Rf& a, const Rf& b) {
  return std::bit_cast<std::array<std::uint32_t, 4>>(a) == std::bit_cast<std::array<std::uint32_t, 4>>(b);
}

// An animated size changes nothing where there is nothing to blur: 10,000 sizes, in every choice of channels.
TEST(FloatBlur, KeepsAFlatAreaToTheLastBitAtTenThousandSizes) {
  const Rf pixels[] = {{{0.18f, 0.5f, 1.0f, 1.0f}},
                       {{3.14159274f, 65504.0f, -2.71828175f, 0.25f}},
                       {{0.0123456789f, 100.1f, 0.333333343f, 0.999999940f}}};
  FloatFrame source(7, 5);
  FloatFrame result(7, 5);
  source.setEdgeMethods(kEdgeReflect, kEdgeWrap);
  for (int size = 0; size < 10000; ++size) {
    const Rf pixel = pixels[size % 3];
    fill(source, pixel);
    // Up to 15 pixels, which is the limit of this picture.
    const float radius = 0.0015f * static_cast<float>(size);
    blur(source, result, radius, kFuzzRGBA + size % 11);
    Rf expected = pixel;
    if (size % 11 == kFuzzGrey) expected.green = expected.blue = pixel.red;
    ASSERT_TRUE(sameBits(*result.at(3, 2), expected)) << "radius " << radius << " mode " << size % 11;
  }
}

TEST(FloatBlur, KeepsWhatIsBrighterThanWhiteAndDarkerThanBlack) {
  FloatFrame source(31, 1);
  FloatFrame result(31, 1);
  *source.at(15, 0) = Rf{{6000.0f, -8.0f, 1.0f, 1.0f}};
  FloatSampler sampler;
  sampler.sizeX = 1.0f;
  sampler.process(&source, &result);
  // Three boxes of three taps: 7 of 27 in the middle.
  EXPECT_NEAR(result.at(15, 0)->red, 6000.0 * 7 / 27, 1e-3);
  EXPECT_NEAR(result.at(15, 0)->green, -8.0 * 7 / 27, 1e-6);
  double sum = 0.0;
  for (int x = 0; x < 31; ++x)
    sum += static_cast<double>(result.at(x, 0)->red);
  EXPECT_NEAR(sum, 6000.0, 1e-3);
}

TEST(FloatBlur, SharpensWithoutALimit) {
  FloatFrame source(9, 1);
  FloatFrame result(9, 1);
  *source.at(4, 0) = Rf{{10.0f, -10.0f, 1.0f, 0.5f}};
  FloatSampler sampler;
  sampler.method = kFuzzSharpen;
  sampler.sizeX = 1.0f;
  sampler.process(&source, &result);
  EXPECT_NEAR(result.at(4, 0)->red, 20.0 - 70.0 / 27, 1e-5);
  EXPECT_NEAR(result.at(4, 0)->green, -20.0 + 70.0 / 27, 1e-5);
  EXPECT_LT(result.at(3, 0)->red, -1.0f);
}

TEST(FloatBlur, CountsWhatIsNoNumberAsNothingAndInfinityAsTheLargest) {
  FloatFrame source(9, 1);
  FloatFrame result(9, 1);
  *source.at(4, 0) =
      Rf{{std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(), -1e38f, 1.0f}};
  FloatSampler sampler;
  sampler.sizeX = 1.0f;
  sampler.process(&source, &result);
  EXPECT_EQ(result.at(4, 0)->red, 0.0f);
  EXPECT_NEAR(result.at(4, 0)->green, 65504.0 * 7 / 27, 0.01);
  EXPECT_NEAR(result.at(4, 0)->blue, -65504.0 * 7 / 27, 0.01);
}

// Radii below 0 come from transitions outside their duration, radii that are no numbers from infinite properties.
TEST(FloatBlur, CountsRadiiBelowZeroAndWithoutAValueAsZero) {
  Random random(3);
  RandomPicture<Rf, Rf> source(random, 9, 7);
  FloatFrame expected(9, 7);
  for (std::int32_t mode = kFuzzRGBA; mode <= kFuzzChroma; ++mode) {
    blur(source.texture, expected, 0.0f, mode);
    for (const float radius : {-7.5f, std::numeric_limits<float>::quiet_NaN()}) {
      // A run that writes nothing leaves these zeros.
      FloatFrame result(9, 7);
      blur(source.texture, result, radius, mode);
      for (int i = 0; i < 63; ++i)
        ASSERT_TRUE(sameBits(*result.at(i % 9, i / 9), *expected.at(i % 9, i / 9))) << mode << " radius " << radius;
    }
  }
}

// Unfiltered channels keep every bit, in all ways of choosing them.
TEST(FloatBlur, KeepsTheChannelsThatAreNotChosen) {
  Random random(4);
  RandomPicture<Rf, Rf> source(random, 12, 9);
  source.texture.wholeBounds();
  source.texture.setOrigin(0, 0);
  FloatFrame result(12, 9);
  blur(source.texture, result, 1.5f, kFuzzGreen);
  for (int y = 0; y < 9; ++y) {
    for (int x = 0; x < 12; ++x) {
      const Rf& before = *source.texture.at(x, y);
      const Rf& after = *result.at(x, y);
      EXPECT_EQ(after.red, before.red);
      EXPECT_EQ(after.blue, before.blue);
      EXPECT_EQ(after.alpha, before.alpha);
    }
  }
  blur(source.texture, result, 1.5f, kFuzzLuminance);
  for (int y = 0; y < 9; ++y) {
    for (int x = 0; x < 12; ++x)
      EXPECT_EQ(result.at(x, y)->alpha, source.texture.at(x, y)->alpha);
  }
}

// Any tile, at any place of its own, is that part of the whole.
TEST(FloatBlur, OfATileEqualsThatPartOfTheWhole) {
  forRandomCases(60, [](Random& random) {
    RandomPicture<Rf, Rf> source(random, random.within(20, 60), random.within(20, 60));
    const float radius = random.between(0.0f, 9.0f);
    const std::int32_t mode = random.within(kFuzzRGBA, kFuzzChroma);
    FloatSampler sampler;
    sampler.mode = mode;
    sampler.sizeX = sampler.sizeY = radius;
    FloatFrame whole(60, 60);
    sampler.process(&source.texture, &whole);

    // The limit of a radius depends on the target's size, which a tile's holds.
    const int x = random.within(0, 40);
    const int y = random.within(0, 40);
    FloatFrame tile(20, 20);
    tile.setWriteOrigin(x, y);
    FloatSampler part;
    part.mode = mode;
    part.sizeX = part.sizeY = radius;
    part.process(&source.texture, &tile);
    for (int row = 0; row < 20; ++row) {
      for (int column = 0; column < 20; ++column)
        ASSERT_TRUE(sameBits(*tile.at(column, row), *whole.at(x + column, y + row))) << radius << " mode " << mode;
    }
  });
}

}  // namespace
}  // namespace vblur::test
