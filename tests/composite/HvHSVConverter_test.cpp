#include "composite/HvHSVConverter.h"

#include <gtest/gtest.h>

#include "tests/composite/Pictures.h"

namespace vblur::test {
namespace {

using Hsv8 = HvHSVConverter<R8, Rf, 255>;
using Hsv16 = HvHSVConverter<R16, Rf, 16384>;

TEST(HvHSVConverter, SextantsAtEightBits) {
  EXPECT_EQ(Hsv8::fromRGB(255, 0, 0), (HvHSV{0, 255, 255}));
  EXPECT_EQ(Hsv8::fromRGB(255, 255, 0), (HvHSV{255, 255, 255}));
  EXPECT_EQ(Hsv8::fromRGB(0, 255, 0), (HvHSV{510, 255, 255}));
  EXPECT_EQ(Hsv8::fromRGB(0, 255, 255), (HvHSV{765, 255, 255}));
  EXPECT_EQ(Hsv8::fromRGB(0, 0, 255), (HvHSV{1020, 255, 255}));
  EXPECT_EQ(Hsv8::fromRGB(255, 0, 255), (HvHSV{1275, 255, 255}));
}

TEST(HvHSVConverter, BlackAndGreyHaveNeitherHueNorSaturation) {
  EXPECT_EQ(Hsv8::fromRGB(0, 0, 0), (HvHSV{0, 0, 0}));
  EXPECT_EQ(Hsv8::fromRGB(77, 77, 77), (HvHSV{0, 0, 77}));
  // A maximum of 0 is black, even above negative components.
  EXPECT_EQ(Hsv16::fromRGB(0, -5, -10), (HvHSV{0, 0, 0}));
  // The difference is below one step of saturation: grey.
  EXPECT_EQ(Hsv16::fromRGB(32767, 32767, 32766), (HvHSV{0, 0, 32767}));
}

TEST(HvHSVConverter, SaturationRunsToOneNotToTheTopOfStorage) {
  EXPECT_EQ(Hsv16::fromRGB(32767, 0, 0), (HvHSV{0, 16384, 32767}));
  EXPECT_EQ(Hsv16::fromRGB(32767, -32768, -32768).saturation, 32768);
}

// Components with a gain can overflow: 65536 x 32768 is 2^31, which wraps to -2^31.
TEST(HvHSVConverter, SixteenBitHueWraps) {
  EXPECT_EQ(Hsv16::fromRGB(32767, -32768, 32767).hue, -2147450880 / 131070 + 98304);
  EXPECT_EQ(Hsv16::fromRGB(70000, 65535, 0), (HvHSV{2147450880 / 140000, 16384, 70000}));
  EXPECT_EQ(Hsv16::fromRGB(70000, 65536, 0), (HvHSV{-15339 + 98304, 16384, 70000}));
}

TEST(HvHSVConverter, QuotientThatDoesNotFitIsTheLowestNumber) {
  // The maximum is -1, and 131072 x 16384 wraps to -2^31.
  const HvHSV hsv = Hsv16::fromRGB(-1, -1 - 131072, -1);
  EXPECT_EQ(hsv.saturation, kInt32Min);
  EXPECT_EQ(hsv.value, -1);
  // A range of 2^31, doubled, wraps to 0.
  EXPECT_EQ(Hsv8::fromRGB(1 << 30, -(1 << 30), 0).value, 1 << 30);
}

TEST(HvHSVConverter, PrimariesComeBack) {
  for (int corner = 1; corner < 8; ++corner) {
    const R8 p = Make<R8>(corner & 1 ? 255 : 0, corner & 2 ? 255 : 0, corner & 4 ? 255 : 0, 0);
    EXPECT_EQ(Hsv8::toRGB(Hsv8::fromRGB(p.red, p.green, p.blue)), p);
    const R16 w = Make<R16>(corner & 1 ? 16384 : 0, corner & 2 ? 16384 : 0, corner & 4 ? 16384 : 0, 0);
    EXPECT_EQ(Hsv16::toRGB(Hsv16::fromRGB(w.red, w.green, w.blue)), w);
  }
}

TEST(HvHSVConverter, GreyIsLimitedLikeTheOtherColours) {
  EXPECT_EQ(Hsv8::toRGB({0, 0, 300}), Make<R8>(255, 255, 255, 0));
  EXPECT_EQ(Hsv8::toRGB({0, 0, -1}), Make<R8>(0, 0, 0, 0));
  EXPECT_EQ(Hsv16::toRGB({5, 0, 40000}), Make<R16>(32767, 32767, 32767, 0));
  EXPECT_EQ(Hsv16::toRGB({5, 16384, 40000}).red, 32767);
}

TEST(HvHSVConverter, HueIsTakenRoundTheCircle) {
  for (const std::int32_t turn : {-2, -1, 1, 2}) {
    EXPECT_EQ(Hsv8::toRGB({700 + turn * 1530, 200, 180}), Hsv8::toRGB({700, 200, 180}));
  }
  EXPECT_EQ(Hsv8::toRGB({1530, 255, 255}), Make<R8>(255, 0, 0, 0));
  EXPECT_EQ(Hsv8::toRGB({-1, 255, 255}), Make<R8>(255, 0, 1, 0));
}

}  // namespace
}  // namespace vblur::test
