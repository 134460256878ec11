// The colour conversion by exact values, and which stored values fit the pixel type.
#include "blur/ColourConversion.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "blur/RGBToYUVSampler.h"
#include "tests/support/PrintPixel.h"
#include "tests/support/Random.h"

namespace vblur::test {
namespace {

using Frame16 = HvTexture<R16, Ri>;

R8 throughYuv(const R8& pixel) {
  return rgbOfHeldYuv<255, R8>(heldYuvOf<255>(pixel));
}

TEST(ColourConversion, HoldsWhiteAsItsUpperHalf) {
  EXPECT_EQ(yuvFromRgb(255, 255, 255), (YuvInt{254, 0, 0}));
  EXPECT_EQ(heldYuvOf<255>(R8{{255, 255, 255, 9}}), (Ri{{254, 127, 127, 9}}));
  EXPECT_EQ(yuvFromHeld<255>(254), 253);
  EXPECT_EQ(yuvFromHeld<255>(127), -1);
}

TEST(ColourConversion, GivesWhiteBackALittleGreen) {
  EXPECT_EQ(throughYuv(R8{{255, 255, 255, 77}}), (R8{{251, 254, 250, 77}}));
  EXPECT_EQ(throughYuv(R8{{128, 128, 128, 0}}), (R8{{125, 127, 124, 0}}));
  EXPECT_EQ(throughYuv(R8{{255, 0, 0, 1}}), (R8{{251, 0, 0, 1}}));
  EXPECT_EQ(throughYuv(R8{{0, 0, 0, 2}}), (R8{{0, 0, 0, 2}}));
}

TEST(ColourConversion, LosesAStepOfEvenValuesAndNoneOfOddOnes) {
  for (int value = -255; value <= 255; ++value)
    EXPECT_EQ(yuvFromHeld<255>(heldYuv<255>(value)), value % 2 == 0 && value != -255 ? value - 1 : value) << value;
  for (int value = -32767; value <= 32767; ++value)
    ASSERT_EQ(yuvFromHeld<32767>(heldYuv<32767>(value)), value % 2 == 0 ? value - 1 : value) << value;
}

TEST(ColourConversion, HoldsNegativeDifferencesFromZeroUp) {
  EXPECT_EQ(heldYuv<255>(-1), 127);
  EXPECT_EQ(yuvFromHeld<255>(127), -1);
  EXPECT_EQ(heldYuv<255>(-255), 0);
  EXPECT_EQ(heldYuv<255>(255), 255);
}

// 8-bit planes hold every colour.
TEST(ColourConversion, OfEightBitsFitsEightBits) {
  for (int red = 0; red < 256; red += kShareOfCases) {
    bool allFit = true;
    for (int green = 0; green < 256; ++green) {
      for (int blue = 0; blue < 256; ++blue) {
        const R8 pixel{
            {static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green), static_cast<std::uint8_t>(blue), 255}};
        allFit = allFit && fits<R8>(heldYuvOf<255>(pixel));
      }
    }
    ASSERT_TRUE(allFit) << red;
  }
}

// Each stored value is monotonic in each component, so the ends of the range suffice.
TEST(ColourConversion, OfSixteenBitsFitsSixteenBitsButForVBelowZero) {
  const auto held = [](int red, int green, int blue) {
    return heldYuvOf<32767>(
        R16{{static_cast<std::int16_t>(red), static_cast<std::int16_t>(green), static_cast<std::int16_t>(blue), 0}});
  };
  EXPECT_EQ(held(-32768, -32768, -32768).red, 3);
  EXPECT_EQ(held(32767, 32767, 32767).red, 32763);
  EXPECT_EQ(held(32767, 32767, -32768).green, 2087);
  EXPECT_EQ(held(-32768, -32768, 32767).green, 30679);
  EXPECT_EQ(held(-32768, 32767, 32767).blue, -3760);
  EXPECT_EQ(held(32767, -32768, -32768).blue, 36527);
  EXPECT_EQ(held(32767, 0, 0).blue, 26455);
  EXPECT_TRUE(fits<R16>(held(32767, 0, 0)));
  EXPECT_TRUE(fits<R16>(held(-32768, 32767, 32767)));
  EXPECT_FALSE(fits<R16>(held(32767, -32768, -32768)));
  EXPECT_TRUE(fits<Ri>(held(32767, -32768, -32768)));
}

template <class Out>
bool fitInto(const R16& inside, const R16& outside) {
  HvTexture<R16, Ri> in(3, 2);
  std::fill_n(in.at(0, 0), 6, R16{{1, 2, 3, 4}});
  *in.at(2, 1) = inside;
  in.setOutsideColour(outside);
  HvTexture<Out, Ri> out(3, 2);
  RGBToYUVSampler<HvTexture<R16, Ri>, HvTexture<Out, Ri>, R16, Ri, 32767> sampler;
  sampler.process(&in, &out);
  return sampler.allFit();
}

TEST(ColourConversion, ReportsAPictureOrAnOutsideColourThatDoesNotFit) {
  const R16 good{{100, 200, 300, 0}};
  const R16 bad{{32767, -32768, -32768, 0}};
  EXPECT_TRUE(fitInto<R16>(good, good));
  EXPECT_FALSE(fitInto<R16>(bad, good));
  EXPECT_FALSE(fitInto<R16>(good, bad));
  EXPECT_TRUE(fitInto<Ri>(bad, bad));
}

TEST(ColourConversion, ReportsThePictureOfTheLastRunOnly) {
  HvTexture<R16, Ri> in(1, 1);
  *in.at(0, 0) = R16{{32767, -32768, -32768, 0}};
  HvTexture<R16, Ri> out(1, 1);
  RGBToYUVSampler<Frame16, Frame16, R16, Ri, 32767> sampler;
  sampler.process(&in, &out);
  EXPECT_FALSE(sampler.allFit());
  *in.at(0, 0) = R16{};
  sampler.process(&in, &out);
  EXPECT_TRUE(sampler.allFit());
}

TEST(ColourConversion, KeepsTheSignOfNegativeSums) {
  EXPECT_EQ(yuvFromRgb(-1, 0, 0), (YuvInt{-1, 0, -1}));
  EXPECT_EQ(yuvFromRgb(-20000, 0, 0), (YuvInt{-5977, 2944, -12295}));
}

TEST(ColourConversion, KeepsGreyGrey) {
  for (int grey = -32768; grey <= 32767; ++grey) {
    const YuvInt yuv = yuvFromRgb(grey, grey, grey);
    ASSERT_EQ(yuv, (YuvInt{(4095 * grey) >> 12, 0, 0})) << grey;
  }
}

TEST(ColourConversion, HasAMatrixWhoseRowsSumToAlmostOneAndNothing) {
  const YuvInt sums = yuvFromRgb(4096, 4096, 4096);
  EXPECT_EQ(sums, (YuvInt{4095, 0, 0}));
}

TEST(ColourConversion, WritesNoAlphaOfItsOwn) {
  R8 pixel{{1, 2, 3, 200}};
  rgbFromYuv(pixel, {128.0f, 0.0f, 0.0f}, 0.0f, 255.0f);
  EXPECT_EQ(pixel, (R8{{128, 128, 128, 0}}));
}

TEST(ColourConversion, LimitsWhatComesBackToTheBoundsOfTheCaller) {
  R16 pixel{};
  rgbFromYuv(pixel, {-500.0f, 0.0f, 0.0f}, 0.0f, 32767.0f);
  EXPECT_EQ(pixel, R16{});
  rgbFromYuv(pixel, {40000.0f, 0.0f, 0.0f}, 0.0f, 32767.0f);
  EXPECT_EQ(pixel, (R16{{32767, 32767, 32767, 0}}));
}

TEST(ColourConversion, WeighsFloatsWithTheDecimalFractions) {
  const YuvFloat yuv = yuvFromRgb(100.0f, 50.0f, 25.0f);
  EXPECT_EQ(yuv.y, 100.0f * 0.2989f + 50.0f * 0.5866f + 25.0f * 0.1144f);
  EXPECT_EQ(yuv.u, 25.0f * 0.4364f - (50.0f * 0.2891f + 100.0f * 0.1473f));
  EXPECT_EQ(yuv.v, 100.0f * 0.6149f - 50.0f * 0.5145f - 25.0f * 0.1004f);
}

}  // namespace
}  // namespace vblur::test
