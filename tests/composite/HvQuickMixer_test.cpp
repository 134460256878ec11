
#include "composite/HvQuickMixer.h"

#include <limits>

#include <gtest/gtest.h>

#include "tests/composite/FloatPixels.h"
#include "tests/model/mix_back.h"
#include "tests/support/KernelRuns.h"
#include "tests/support/ThreadCount.h"

namespace vblur::test {
namespace {

template <class Pixel>
using Mixer = HvQuickMixer<Pixel, Rf, Pixel::kMax>;

template <class Pixel>
class HvQuickMixerAtBothDepths : public testing::Test {
 protected:
  static Pixel Mixed(float amount, const Pixel& a, const Pixel& b) {
    HvTexture<Pixel, Rf> first(1, 1);
    HvTexture<Pixel, Rf> second(1, 1);
    HvTexture<Pixel, Rf> target(1, 1);
    *first.at(0, 0) = a;
    *second.at(0, 0) = b;
    Mixer<Pixel> mixer;
    mixer.amount = amount;
    mixer.run(&first, &second, &target);
    return *target.at(0, 0);
  }
};

TYPED_TEST_SUITE(HvQuickMixerAtBothDepths, Depths, TypeNames);

template <class Pixel>
class HvQuickMixerAtAllDepths : public testing::Test {};

TYPED_TEST_SUITE(HvQuickMixerAtAllDepths, DepthsAndFloats, TypeNames);

TYPED_TEST(HvQuickMixerAtBothDepths, EndsAreThePicturesExactly) {
  Random random(1);
  for (int i = 0; i < 2000; ++i) {
    const auto a = RandomPixel<TypeParam>(random);
    const auto b = RandomPixel<TypeParam>(random);
    ASSERT_EQ(this->Mixed(0.0f, a, b), b);
    ASSERT_EQ(this->Mixed(1.0f, a, b), a);
    ASSERT_EQ(this->Mixed(-3.0f, a, b), b);
    ASSERT_EQ(this->Mixed(7.5f, a, b), a);
  }
}

// 20 + (-1280 / 255), truncated.
TEST(HvQuickMixerAtEightBits, DividesTowardZero) {
  HvTexture<R8, Rf> a(1, 1);
  HvTexture<R8, Rf> b(1, 1);
  *a.at(0, 0) = Make<R8>(10, 20, 0, 1);
  *b.at(0, 0) = Make<R8>(20, 10, 1, 0);
  Mixer<R8> mixer;
  mixer.amount = 128.0f / 255.0f;
  ASSERT_EQ(amountFromFloat<255>(mixer.amount), 128);
  HvTexture<R8, Rf> target(1, 1);
  mixer.run(&a, &b, &target);
  EXPECT_EQ(*target.at(0, 0), Make<R8>(15, 15, 1, 0));
}

TEST(HvQuickMixerAtSixteenBits, FullStrengthIsTheTopOfStorage) {
  HvTexture<R16, Rf> a(1, 1);
  HvTexture<R16, Rf> b(1, 1);
  *a.at(0, 0) = Make<R16>(-100, 32767, -32768, 32767);
  *b.at(0, 0) = Make<R16>(-300, -32768, 32767, 0);
  Mixer<R16> mixer;
  mixer.amount = 16384.0f / 32767.0f;
  ASSERT_EQ(amountFromFloat<32767>(mixer.amount), 16384);
  mixer.run(&a, nullptr, &b);
  EXPECT_EQ(*b.at(0, 0), Make<R16>(-200, 0, -1, 16384));
}

TYPED_TEST(HvQuickMixerAtBothDepths, EvenRowsStartBehindAnOddFirstRow) {
  using Pixel = TypeParam;
  const ThreadCount threads(1);
  for (const std::int32_t field : {1, 2}) {
    HvTexture<Pixel, Rf> a(3, 7);
    HvTexture<Pixel, Rf> target(3, 7);
    Fill(a, Make<Pixel>(9, 9, 9, 9));
    Mixer<Pixel> mixer;
    mixer.amount = 1.0f;
    mixer.setFieldMode(field);
    mixer.setWindow(1, 1, 2, 5);
    mixer.run(&a, nullptr, &target);
    for (std::int32_t y = 0; y < 7; ++y) {
      const bool mixed = y >= 1 && y <= 5 && y % 2 == (field == 1 ? 0 : 1);
      EXPECT_EQ(*target.at(1, y), mixed ? Make<Pixel>(9, 9, 9, 9) : Pixel{}) << field << " " << y;
      EXPECT_EQ(*target.at(0, y), Pixel{});
    }
  }
}

TYPED_TEST(HvQuickMixerAtAllDepths, PlacesAndWindowsEqualTheModel) {
  using Pixel = TypeParam;
  KernelRunsOfCases runs;
  forRandomCases(300, [&](Random& random) {
    HvTexture<Pixel, Rf> a(random.within(1, 9), random.within(1, 9));
    HvTexture<Pixel, Rf> b(random.within(1, 9), random.within(1, 9));
    HvTexture<Pixel, Rf> target(random.within(1, 20), random.within(1, 12));
    for (auto* texture : {&a, &b, &target}) {
      FillRandom(*texture, random);
      setRandomSurroundings(random, *texture, storageRange<Pixel>());
    }
    target.setWriteOrigin(random.within(-9, 9), random.within(-9, 9));
    const bool inPlace = random.oneIn(2);
    Mixer<Pixel> mixer;
    mixer.amount = static_cast<float>(random.within(-10, 1010)) / 1000.0f;
    const std::int32_t x = random.within(-15, 20);
    const std::int32_t y = random.within(-15, 20);
    const model::Window window{x, y, x + random.within(0, 20), y + random.within(0, 20)};
    mixer.setWindow(window.x1, window.y1, window.x2, window.y2);
    model::Picture expected = ModelOf(target);
    const model::Picture second = ModelOf(b);
    model::MixPictures(kDepth<Pixel>, mixer.amount, ModelOf(a), inPlace ? nullptr : &second, expected,
                       model::Settle(window, expected));
    const ThreadCount threads(random.oneOf({1, 2, 3, 7, 8}));
    const CpuLevel level(randomCpuLevel(random));
    mixer.run(&a, inPlace ? nullptr : &b, &target);
    EXPECT_EQ(CountDifferent(target, expected), 0);
    runs.note();
  });
  if (kDepth<Pixel> != model::Depth::Float) {
    EXPECT_TRUE(runs.had({sizeof(Pixel) == 4 ? "quickMixRow 8" : "quickMixRow 16"}));
  }
}

TYPED_TEST(HvQuickMixerAtBothDepths, ATargetWithoutRowsIsLeftAlone) {
  HvTexture<TypeParam, Rf> a(2, 2);
  HvTexture<TypeParam, Rf> empty;
  Mixer<TypeParam> mixer;
  mixer.run(&a, nullptr, &empty);
  EXPECT_EQ(empty.data, nullptr);
}

Rf MixedFloats(float amount, const Rf& a, const Rf& b) {
  HvTexture<Rf, Rf> first(1, 1);
  HvTexture<Rf, Rf> target(1, 1);
  *first.at(0, 0) = a;
  *target.at(0, 0) = b;
  Mixer<Rf> mixer;
  mixer.amount = amount;
  mixer.run(&first, nullptr, &target);
  return *target.at(0, 0);
}

TEST(HvQuickMixerInFloats, MixesBeyondTheEndsWithoutRoundingTheAmount) {
  EXPECT_EQ(MixedFloats(0.25f, MakeFloat(2.0f, -1.0f, 1.0f, 0.0f), MakeFloat(6.0f, 1.0f, 1.0f, 1.0f)),
            MakeFloat(5.0f, 0.5f, 1.0f, 0.75f));
  EXPECT_EQ(MixedFloats(0x1p-20f, MakeFloat(1.0f, 0, 0, 0), Rf{}).red, 0x1p-20f);
}

TEST(HvQuickMixerInFloats, EndsAreThePicturesAndTheRestLiesBetween) {
  forRandomCases(2000, [](Random& random) {
    const Rf a = FloatPixel(random, AnyCarried);
    const Rf b = FloatPixel(random, AnyCarried);
    ASSERT_EQ(MixedFloats(0.0f, a, b), b);
    ASSERT_EQ(MixedFloats(1.0f, a, b), a);
    ASSERT_EQ(MixedFloats(-3.0f, a, b), b);
    ASSERT_EQ(MixedFloats(7.5f, a, b), a);
    ASSERT_EQ(MixedFloats(std::numeric_limits<float>::quiet_NaN(), a, b), b);
    ASSERT_TRUE(LiesBetween(MixedFloats(random.between(0.0f, 1.0f), a, b), a, b));
  });
}

}  // namespace
}  // namespace vblur::test
