#include "image/Arithmetic.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace vblur {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST(Arithmetic, FloatToIntTruncatesTowardZero) {
  EXPECT_EQ(truncToInt(254.99f), 254);
  EXPECT_EQ(truncToInt(-0.5f), 0);
  EXPECT_EQ(truncToInt(-1.999f), -1);
  EXPECT_EQ(truncToInt(0.9999999), 0);
  EXPECT_EQ(truncToInt(-254.99), -254);
}

TEST(Arithmetic, FloatToIntGivesTheLowestNumberForWhatDoesNotFit) {
  for (const float v : {kNan, kInfinity, -kInfinity, 2147483648.0f, -2147483904.0f, 1e30f, -1e30f}) {
    EXPECT_EQ(truncToInt(v), kInt32Min) << v;
    EXPECT_EQ(truncToInt(static_cast<double>(v)), kInt32Min) << v;
  }
}

TEST(Arithmetic, FloatToIntKeepsTheLastNumbersThatFit) {
  EXPECT_EQ(truncToInt(2147483520.0f), 2147483520);
  EXPECT_EQ(truncToInt(-2147483648.0f), kInt32Min);
  EXPECT_EQ(truncToInt(2147483647.9), kInt32Max);
  EXPECT_EQ(truncToInt(-2147483648.9), kInt32Min);
  EXPECT_EQ(truncToInt(-2147483647.5), -2147483647);
}

TEST(Arithmetic, FloorToIntRoundsTowardMinusInfinity) {
  EXPECT_EQ(floorToInt(-1.0f), -1);
  EXPECT_EQ(-1.0f - static_cast<float>(floorToInt(-1.0f)), 0.0f);
  EXPECT_EQ(floorToInt(-0.25f), -1);
  EXPECT_EQ(-0.25f - static_cast<float>(floorToInt(-0.25f)), 0.75f);
  for (int i = -4000; i <= 4000; ++i) {
    const float v = static_cast<float>(i) / 16.0f;
    ASSERT_EQ(floorToInt(v), static_cast<int>(std::floor(v))) << v;
  }
}

TEST(Arithmetic, WrappingArithmeticKeepsTheLowThirtyTwoBits) {
  EXPECT_EQ(wrapAdd(kInt32Max, 1), kInt32Min);
  EXPECT_EQ(wrapSub(kInt32Min, 1), kInt32Max);
  EXPECT_EQ(wrapMul(65536, 65536), 0);
  EXPECT_EQ(wrapMul(kInt32Min, -1), kInt32Min);
  EXPECT_EQ(wrapMul(-3, 7), -21);
}

TEST(Arithmetic, ClampTestsTheLowEndFirstAndLetsNanThrough) {
  EXPECT_EQ(clampTo(-0.5f, 0.0f, 255.0f), 0.0f);
  EXPECT_EQ(clampTo(255.5f, 0.0f, 255.0f), 255.0f);
  EXPECT_EQ(clampTo(12.5f, 0.0f, 255.0f), 12.5f);
  EXPECT_EQ(clampTo(5.0f, 10.0f, 0.0f), 10.0f);
  EXPECT_EQ(clampTo(11.0f, 10.0f, 0.0f), 0.0f);
  EXPECT_TRUE(std::isnan(clampTo(kNan, 0.0f, 255.0f)));
}

TEST(Arithmetic, ClampOfCrossedBoundsGivesTheLowOneOnlyToWhatLiesBelowIt) {
  EXPECT_EQ(clampTo(3, 5, 4), 5);
  EXPECT_EQ(clampTo(5, 5, 4), 4);
  EXPECT_EQ(clampTo(9, 5, 4), 4);
  EXPECT_EQ(clampTo(4, 4, 9), 4);
  EXPECT_EQ(clampTo(10, 4, 9), 9);
}

TEST(Arithmetic, StoreClampsInFloatAndThenTruncates) {
  EXPECT_EQ(storeClamped<R8>(254.99f), 254);
  EXPECT_EQ(storeClamped<R8>(-0.5f), 0);
  EXPECT_EQ(storeClamped<R8>(1000.0f), 255);
  EXPECT_EQ(storeClamped<R16>(32767.9f), 32767);
  EXPECT_EQ(storeClamped<R16>(-40000.0f), -32768);
  EXPECT_EQ(storeClamped<R16>(-100.9f), -100);
  EXPECT_EQ(storeClamped<R8>(300), 255);
  EXPECT_EQ(storeClamped<R8>(-1), 0);
  EXPECT_EQ(storeClamped<R16>(-32769), -32768);
}

TEST(Arithmetic, StoreWithoutAClampKeepsTheLowBits) {
  EXPECT_EQ(storeNarrow<std::uint8_t>(truncToInt(254.99f)), 254);
  EXPECT_EQ(storeNarrow<std::uint8_t>(truncToInt(-0.5f)), 0);
  EXPECT_EQ(storeNarrow<std::uint8_t>(256), 0);
  EXPECT_EQ(storeNarrow<std::uint8_t>(-1), 255);
  EXPECT_EQ(storeNarrow<std::int16_t>(32768), -32768);
  EXPECT_EQ(storeNarrow<std::int16_t>(-32769), 32767);
}

TEST(Arithmetic, IntegerMixGivesOneEndExactlyWithNothingAndTheOtherWithAll) {
  for (int a = 0; a <= 255; ++a) {
    for (int b = 0; b <= 255; ++b) {
      ASSERT_EQ(mixInt<255>(a, b, 0), b);
      ASSERT_EQ(mixInt<255>(a, b, 255), a);
    }
  }
  for (int a = -32768; a <= 32767; a += 97) {
    for (int b = -32768; b <= 32767; b += 89) {
      ASSERT_EQ(mixInt<32767>(a, b, 0), b);
      ASSERT_EQ(mixInt<32767>(a, b, 32767), a);
    }
  }
  for (const int a : {-32768, 32767}) {
    for (const int b : {-32768, 32767}) {
      EXPECT_EQ(mixInt<32767>(a, b, 0), b);
      EXPECT_EQ(mixInt<32767>(a, b, 32767), a);
    }
  }
}

TEST(Arithmetic, IntegerMixDividesTowardZeroAtEveryEightBitValue) {
  for (int a = 0; a <= 255; ++a) {
    for (int b = 0; b <= 255; ++b) {
      for (int m = 0; m <= 255; m += 3) {
        const double quotient = static_cast<double>((a - b) * m) / 255.0;
        ASSERT_EQ(mixInt<255>(a, b, m), b + static_cast<int>(std::trunc(quotient))) << a << ' ' << b << ' ' << m;
      }
    }
  }
}

TEST(Arithmetic, IntegerMixStaysOnTheSideOfTheSecond) {
  EXPECT_EQ(mixInt<255>(10, 20, 128), 15);
  EXPECT_EQ(mixInt<255>(0, 1, 254), 1);
}

TEST(Arithmetic, IntegerMixTakesSixteenBitOneForAboutAHalf) {
  EXPECT_EQ(mixInt<32767>(20000, 0, 16384), 10000);
  EXPECT_EQ(mixInt<32767>(32767, 0, 16384), 16384);
  EXPECT_EQ(mixInt<32767>(-100, -300, 16384), -200);
}

TEST(Arithmetic, AmountIsScaledToTheTopOfTheRangeAndLimited) {
  EXPECT_EQ(amountFromFloat<255>(0.5f), 127);
  EXPECT_EQ(amountFromFloat<255>(1.0f), 255);
  EXPECT_EQ(amountFromFloat<255>(-0.1f), 0);
  EXPECT_EQ(amountFromFloat<255>(7.0f), 255);
  EXPECT_EQ(amountFromFloat<32767>(0.5f), 16383);
  EXPECT_EQ(amountFromFloat<32767>(1.0f), 32767);
}

TEST(Arithmetic, AmountThatIsNoNumberIsNone) {
  EXPECT_EQ(amountFromFloat<255>(kNan), 0);
}

TEST(Arithmetic, FloatPixelsStoreWhatWasComputed) {
  for (const float v : {0.0f, 0.3f, -1.5f, 7.25f, 65504.0f, 1e-40f, -3e38f}) {
    EXPECT_EQ(storeClamped<Rf>(v), v);
    EXPECT_EQ(colourFromFloat<Rf>(v), v);
  }
  static_assert(kTopOf<Rf> == 1 && kTopOf<Cf> == 1);
}

TEST(Arithmetic, FloatMixGivesTheEndsExactlyAndLiesBetween) {
  EXPECT_EQ(mixFloat(2.0f, 1.0f, 0.25f), 1.25f);
  EXPECT_EQ(mixFloat(-3.0f, 1.0f, 0.5f), -1.0f);
  // b + (a - b) is not a when a is small beside b.
  EXPECT_EQ(mixFloat(1e-9f, 1e8f, 1.0f), 1e-9f);
  EXPECT_EQ(mixFloat(1e-9f, 1e8f, 0.0f), 1e8f);
  std::uint32_t state = 1;
  const auto next = [&state] { return state = state * 1664525u + 1013904223u; };
  for (int i = 0; i < 200000; ++i) {
    const auto component = [&] {
      return std::ldexp(static_cast<float>(static_cast<std::int32_t>(next())) * 0x1p-31f,
                        static_cast<int>(next() >> 24) % 60 - 40);
    };
    const float a = component();
    const float b = (next() >> 31) != 0 ? component() : std::nextafter(a, 1.0f);
    const float m = (next() >> 30) != 0 ? static_cast<float>(next() >> 8) * 0x1p-24f : std::nextafter(1.0f, 0.0f);
    const float mixed = mixFloat(a, b, m);
    ASSERT_TRUE(mixed >= std::min(a, b) && mixed <= std::max(a, b)) << a << ' ' << b << ' ' << m << ' ' << mixed;
    ASSERT_EQ(mixFloat(a, a, m), a) << m;
  }
}

TEST(Arithmetic, FloatMixLimitsItsAmount) {
  EXPECT_EQ(mixFloat(5.0f, 3.0f, -0.5f), 3.0f);
  EXPECT_EQ(mixFloat(5.0f, 3.0f, 1.5f), 5.0f);
  EXPECT_EQ(mixFloat(5.0f, 3.0f, kInfinity), 5.0f);
  EXPECT_EQ(mixFloat(5.0f, 3.0f, kNan), 3.0f);
}

TEST(Arithmetic, AmountsAndMixesAreInTheScaleOfThePixel) {
  EXPECT_EQ(amountOf<R8>(0.5f), 127);
  EXPECT_EQ(amountOf<C16>(0.5f), 16383);
  EXPECT_EQ(amountOf<Rf>(0.3f), 0.3f);
  EXPECT_EQ(amountOf<Rf>(-0.3f), 0.0f);
  EXPECT_EQ(amountOf<Rf>(1.3f), 1.0f);
  EXPECT_EQ(amountOf<Rf>(kNan), 0.0f);
  EXPECT_EQ(mixComponent<R8>(10, 20, 128), 15);
  EXPECT_EQ(mixComponent<R16>(20000, 0, 16384), 10000);
  EXPECT_EQ(mixComponent<Rf>(1.0f, 2.0f, 0.25f), 1.75f);
}

TEST(Arithmetic, ColourIsScaledToOneAndNotLimited) {
  EXPECT_EQ(colourFromFloat<R8>(0.5f), 127);
  EXPECT_EQ(colourFromFloat<R16>(0.5f), 8192);
  EXPECT_EQ(colourFromFloat<R16>(1.0f), 16384);
  EXPECT_EQ(colourFromFloat<R16>(-1.5f), -24576);
  EXPECT_EQ(colourFromFloat<R8>(1.01f), 1);
}

TEST(Arithmetic, InterpolationOfFloatsMultipliesTheDifference) {
  EXPECT_EQ(lerp(10.0f, 20.0f, 0.25f), 12.5f);
  // (b - a) * t + a with t = 1 gives 0, not b, when b is too small beside a.
  EXPECT_EQ(lerp(1e8f, 1.0f, 1.0f), (1.0f - 1e8f) * 1.0f + 1e8f);
}

TEST(Arithmetic, InterpolationOfIntegersTruncatesTheSum) {
  EXPECT_EQ(lerp(10, 21, 0.5f), 15);
  EXPECT_EQ(lerp(-10, -21, 0.5f), -15);
  EXPECT_EQ(lerp(0, -1, 0.75f), 0);
  EXPECT_EQ(lerp(7, 7, 0.3f), 7);
}

TEST(Arithmetic, CanBeDoneByTheCompiler) {
  static_assert(truncToInt(-1.5f) == -1 && floorToInt(-1.5f) == -2);
  static_assert(mixInt<255>(10, 20, 128) == 15 && amountFromFloat<255>(0.5f) == 127);
  static_assert(storeClamped<R8>(300.0f) == 255 && lerp(10, 21, 0.5f) == 15);
}

}  // namespace
}  // namespace vblur
