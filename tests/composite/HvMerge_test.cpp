// The choice of one of four forms by gains and blend, and the result of each form for one pixel.
#include "composite/HvMerge.h"

#include <mutex>
#include <set>
#include <thread>
#include <type_traits>

#include <gtest/gtest.h>

#include "tests/composite/FloatPixels.h"
#include "tests/image/WindowEnds.h"
#include "tests/support/ThreadCount.h"

namespace vblur::test {
namespace {

using Merge8 = HvMerge<R8, Rf, 255>;

Merge8 MergeOf(float blend, float gainA = 1.0f, float gainB = 1.0f) {
  Merge8 merge;
  merge.setGains(gainA, gainB);
  merge.setBlend(blend);
  return merge;
}

TEST(HvMerge, BlendWithinAStepOfOneHalfTakesThePlainForm) {
  EXPECT_EQ(MergeOf(0.5f).form(), MergeForm::Integer);
  EXPECT_EQ(MergeOf(0.497f).form(), MergeForm::Integer);
  EXPECT_EQ(MergeOf(0.503f).form(), MergeForm::Integer);
  EXPECT_EQ(MergeOf(0.496f).form(), MergeForm::TowardsA);
  EXPECT_EQ(MergeOf(0.504f).form(), MergeForm::TowardsB);
  EXPECT_EQ(MergeOf(0.0f).form(), MergeForm::TowardsA);
  EXPECT_EQ(MergeOf(1.0f).form(), MergeForm::TowardsB);
}

TEST(HvMerge, GainsWithinAStepOfOneTakeTheIntegerForm) {
  EXPECT_EQ(MergeOf(0.5f, 1.002f, 1.0f).form(), MergeForm::Integer);
  EXPECT_EQ(MergeOf(0.5f, 1.0f, 0.998f).form(), MergeForm::Integer);
  EXPECT_EQ(MergeOf(0.5f, 1.005f, 1.0f).form(), MergeForm::Gained);
  EXPECT_EQ(MergeOf(0.5f, 1.0f, 0.995f).form(), MergeForm::Gained);
  EXPECT_EQ(MergeOf(0.5f, -1.0f, 1.0f).form(), MergeForm::Gained);
}

TEST(HvMerge, BlendIsTestedBeforeGains) {
  EXPECT_EQ(MergeOf(0.2f, 3.0f, 1.0f).form(), MergeForm::TowardsA);
  EXPECT_EQ(MergeOf(0.8f, 3.0f, 1.0f).form(), MergeForm::TowardsB);
}

TEST(HvMerge, WeightsOfABlend) {
  const Merge8 low = MergeOf(0.25f, 2.0f, 0.5f);
  EXPECT_EQ(low.weightA, 0.5f);
  EXPECT_EQ(low.weightB, 0.5f);
  EXPECT_EQ(low.mixA, 1.0f);
  EXPECT_EQ(low.mixB, 0.25f);
  const Merge8 high = MergeOf(0.875f, 2.0f, 0.5f);
  EXPECT_EQ(high.weightA, 0.25f);
  EXPECT_EQ(high.weightB, 0.75f);
  const Merge8 beyond = MergeOf(7.0f);
  EXPECT_EQ(beyond.blend, 1.0f);
  EXPECT_EQ(beyond.weightA, 0.0f);
}

TEST(HvMerge, ABlendOfOneHalfKeepsTheWeightsThatItFinds) {
  Merge8 merge = MergeOf(0.25f);
  merge.setBlend(0.5f);
  EXPECT_EQ(merge.form(), MergeForm::Integer);
  EXPECT_EQ(merge.weightB, 0.5f);
  EXPECT_EQ(merge.mixA, 0.5f);
}

TEST(HvMerge, EndsOfABlendAreTheTwoPictures) {
  const R8 a = Make<R8>(10, 200, 30, 40);
  const R8 b = Make<R8>(220, 20, 130, 140);
  for (const std::int32_t method : {kMergeScreen, kMergeMultiply, kMergeAdd, kMergeSubtract, kMergeDifference,
                                    kMergeOverlay, kMergeHardLight, kMergeAddOver, kMergeAddUnder}) {
    EXPECT_EQ(MergedPixel(method, 0.0f, 1.0f, 1.0f, a, b), a) << method;
    EXPECT_EQ(MergedPixel(method, 1.0f, 1.0f, 1.0f, a, b), b) << method;
  }
  for (const std::int32_t method : {kMergeHue, kMergeValue, kMergeColour, kMergeLighten}) {
    EXPECT_EQ(MergedPixel(method, 0.0f, 1.0f, 1.0f, a, a), MergedPixel(method, 1.0f, 1.0f, 1.0f, a, a)) << method;
  }
}

TEST(HvMerge, BrightnessMethodsMixTheirOperands) {
  const R8 a = Make<R8>(100, 100, 100, 80);
  const R8 b = Make<R8>(200, 200, 200, 160);
  // At 0.75 the operands are the even mix and b, at 0.25 they are a and the even mix.
  EXPECT_EQ(MergedPixel(kMergeLighten, 0.75f, 1.0f, 1.0f, a, b), b);
  EXPECT_EQ(MergedPixel(kMergeLighten, 0.25f, 1.0f, 1.0f, a, b), Make<R8>(150, 150, 150, 120));
  EXPECT_EQ(MergedPixel(kMergeDarken, 0.75f, 1.0f, 1.0f, a, b), Make<R8>(150, 150, 150, 0));
  EXPECT_EQ(MergedPixel(kMergeDarken, 0.25f, 1.0f, 1.0f, a, b), Make<R8>(100, 100, 100, 0));
}

// The operation's result is clamped and truncated before it is mixed.
TEST(HvMerge, ArithmeticMethodsMixTheFinishedResult) {
  const R8 a = Make<R8>(200, 200, 200, 200);
  const R8 b = Make<R8>(100, 100, 100, 100);
  EXPECT_EQ(MergedPixel(kMergeAdd, 0.75f, 1.0f, 1.0f, a, b), Make<R8>(177, 177, 177, 177));
  EXPECT_EQ(MergedPixel(kMergeAdd, 0.25f, 1.0f, 1.0f, a, b), Make<R8>(227, 227, 227, 227));
  EXPECT_EQ(MergedPixel(kMergeAdd, 0.5f, 0.5f, 0.25f, a, b), Make<R8>(125, 125, 125, 125));
}

TEST(HvMerge, FirstAlphaTakesSecondGain) {
  const R8 a = Make<R8>(10, 20, 30, 100);
  const R8 b = Make<R8>(40, 50, 60, 200);
  for (const std::int32_t method :
       {kMergeLuminance, kMergeChroma, kMergeHue, kMergeSaturation, kMergeValue, kMergeColour}) {
    EXPECT_EQ(MergedPixel(method, 0.25f, 2.0f, 0.5f, a, b).alpha, 50) << method;
    EXPECT_EQ(MergedPixel(method, 0.5f, 2.0f, 0.5f, a, b).alpha, 200) << method;
    // (100 x 2 x 0.5) + (200 x 0.5 x 0.5)
    EXPECT_EQ(MergedPixel(method, 0.75f, 2.0f, 0.5f, a, b).alpha, 150) << method;
  }
  EXPECT_EQ(MergedPixel(kMergeLighten, 0.25f, 2.0f, 0.5f, Make<R8>(100, 100, 100, 100), b).alpha, 200);
}

// The threads that ask whether to stop while eight rows are merged on up to four.
std::set<std::thread::id> ThreadsOf(Merge8& merge) {
  struct Asked {
    std::mutex lock;
    std::set<std::thread::id> threads;
  } asked;
  HvInterruptRecord record;
  record.arm(&asked, [](void* context, HvStateWord*) -> std::int32_t {
    auto& seen = *static_cast<Asked*>(context);
    const std::lock_guard guard(seen.lock);
    seen.threads.insert(std::this_thread::get_id());
    return 0;
  });
  const ThreadCount threads(4);
  HvTexture<R8, Rf> picture(2, 8);
  merge.interrupt = &record;
  merge.process(&picture, &picture, &picture);
  return asked.threads;
}

TEST(HvMerge, FlagsOfTheFrameworkAndOfTheMergeAreApart) {
  Merge8 merge = MergeOf(0.8f);
  merge.rgbMode = 1;
  EXPECT_GT(ThreadsOf(merge).size(), 1u);
  merge.Imager::flags |= Imager::kOneThread;
  EXPECT_EQ(ThreadsOf(merge), std::set{std::this_thread::get_id()});
  EXPECT_EQ(merge.form(), MergeForm::TowardsB);
  merge.setBlend(0.5f);
  EXPECT_EQ(merge.form(), MergeForm::Integer);
  EXPECT_EQ(ThreadsOf(merge), std::set{std::this_thread::get_id()});
}

// Initial values; the window sets the flags of Imager, not those of the merge.
TEST(HvMerge, FieldsOfANewMerge) {
  Merge8 merge;
  EXPECT_EQ(merge.rgbMode, 0);
  EXPECT_EQ(merge.hsvMethod, 0);
  EXPECT_EQ(merge.method, kMergeLuminance);
  EXPECT_EQ(merge.gainA, 1.0f);
  EXPECT_EQ(merge.gainB, 1.0f);
  EXPECT_EQ(merge.blend, 0.5f);
  EXPECT_EQ(merge.weightA, 1.0f);
  EXPECT_EQ(merge.weightB, 1.0f);
  EXPECT_EQ(merge.flags, 0u);
  merge.setWindow(1, 2, 3, 4);
  EXPECT_EQ(merge.flags, 0u);
  EXPECT_NE(merge.Imager::flags, 0u);
}

TEST(HvMerge, FieldsStandInTheirOrder) {
  const Merge8 m;
  EXPECT_TRUE(standInOrder(m.rgbMode, m.hsvMethod, m.method, m.gainA, m.gainB, m.mixA, m.mixB, m.blend, m.weightA,
                           m.weightB, m.flags));
}

TEST(HvMerge, FlagsOfGainsAndBlends) {
  EXPECT_EQ(MergeOf(0.5f, 1.005f, 1.0f).flags, 1u);
  EXPECT_EQ(MergeOf(0.6f).flags, 2u);
  EXPECT_EQ(MergeOf(0.4f).flags, 4u);
  EXPECT_EQ(MergeOf(0.4f, 1.0f, 0.995f).flags, 5u);
  Merge8 merge = MergeOf(0.6f, 1.005f);
  merge.setBlend(0.4f);
  EXPECT_EQ(merge.flags, 5u);
  merge.setBlend(0.5f);
  merge.setGains(1.0f, 1.0f);
  EXPECT_EQ(merge.flags, 0u);
}

TEST(HvMerge, InheritsThePixelOperations) {
  static_assert(std::is_base_of_v<HvRGBMerge<R8, Rf, 255>, Merge8>);
  static_assert(std::is_base_of_v<HvHSVConverter<R8, Rf, 255>, Merge8>);
  static_assert(std::is_base_of_v<HvRGBMerge<R16, Rf, 16384>, HvMerge<R16, Rf, 16384>>);
  static_assert(std::is_base_of_v<HvHSVConverter<R16, Rf, 16384>, HvMerge<R16, Rf, 16384>>);
}

// Only mode 1 has methods.
TEST(HvMerge, OtherModesLeaveTheOutputAlone) {
  HvTexture<R8, Rf> picture(1, 1);
  HvTexture<R8, Rf> out(1, 1);
  *picture.at(0, 0) = Make<R8>(1, 2, 3, 4);
  Merge8 merge;
  merge.method = kMergeAdd;
  merge.process(&picture, &picture, &out);
  EXPECT_EQ(*out.at(0, 0), R8{});
  merge.rgbMode = 1;
  merge.process(&picture, &picture, &out);
  EXPECT_EQ(*out.at(0, 0), Make<R8>(2, 4, 6, 8));
}

TEST(HvMerge, MethodsNotInUseLeaveTheOutputAlone) {
  const R8 a = Make<R8>(1, 2, 3, 4);
  for (const std::int32_t method : {-1, 15, 16, 17, 18, 21, 2147483647}) {
    EXPECT_EQ(MergedPixel(method, 0.5f, 1.0f, 1.0f, a, a), R8{}) << method;
  }
}

}  // namespace
}  // namespace vblur::test
