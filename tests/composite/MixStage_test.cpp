// The mix-back stage on whole pictures, in place, with boxes, edge methods and windows.
#include "composite/MixStage.h"

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/composite/FloatPixels.h"
#include "tests/composite/Operations.h"
#include "tests/model/mix_back.h"
#include "tests/model/window.h"
#include "tests/support/KernelRuns.h"
#include "tests/support/StopAfter.h"
#include "tests/support/ThreadCount.h"

namespace vblur::test {
namespace {

constexpr int kMix = 1;
constexpr int kMethodCount = 19;

template <class Pixel>
class MixStage : public testing::Test {
 protected:
  // One pixel of each picture by the stage.
  static Pixel Mixed(std::int32_t method, float blend, float effectGain, float sourceGain, const Pixel& effect,
                     const Pixel& source) {
    HvTexture<Pixel, Rf> from(1, 1);
    HvTexture<Pixel, Rf> result(1, 1);
    *from.at(0, 0) = source;
    *result.at(0, 0) = effect;
    RunMixStage(from, result, method, blend, effectGain, sourceGain, {0, 0, 0, 0}, nullptr);
    return *result.at(0, 0);
  }

  static model::Picture Expected(const HvTexture<Pixel, Rf>& source, const HvTexture<Pixel, Rf>& result,
                                 const model::MixSettings& settings, const StageWindow& window) {
    model::Picture expected = ModelOf(result);
    model::MixBack(settings, ModelOf(source), expected,
                   model::Settle(model::Window{window.x1, window.y1, window.x2, window.y2}, expected));
    return expected;
  }
};

TYPED_TEST_SUITE(MixStage, Depths, TypeNames);

template <class Pixel>
class MixStageAtAllDepths : public MixStage<Pixel> {};

TYPED_TEST_SUITE(MixStageAtAllDepths, DepthsAndFloats, TypeNames);

TYPED_TEST(MixStageAtAllDepths, NoneAndValuesBeyondTheListLeaveTheResult) {
  const TypeParam effect = Make<TypeParam>(1, 2, 3, 4);
  for (const std::int32_t method : {0, -1, 19, 20, 1000, kInt32Min, kInt32Max}) {
    EXPECT_EQ(this->Mixed(method, 100.0f, 300.0f, 300.0f, effect, Make<TypeParam>(9, 9, 9, 9)), effect) << method;
  }
}

TYPED_TEST(MixStageAtAllDepths, MixWeighsThePicturesByBlend) {
  const TypeParam effect = Make<TypeParam>(100, 200, 0, 40);
  const TypeParam source = Make<TypeParam>(200, 100, 4, 80);
  EXPECT_EQ(this->Mixed(kMix, 25.0f, 100.0f, 100.0f, effect, source), Make<TypeParam>(125, 175, 1, 50));
  EXPECT_EQ(this->Mixed(kMix, 0.0f, 100.0f, 100.0f, effect, source), effect);
  EXPECT_EQ(this->Mixed(kMix, 100.0f, 100.0f, 100.0f, effect, source), source);
}

TYPED_TEST(MixStageAtAllDepths, MixAtOneHalfGivesEachPictureHalfItsGain) {
  const TypeParam effect = Make<TypeParam>(100, 80, 0, 40);
  const TypeParam source = Make<TypeParam>(20, 100, 4, 80);
  EXPECT_EQ(this->Mixed(kMix, 50.0f, 50.0f, 100.0f, effect, source), Make<TypeParam>(35, 70, 2, 50));
  // At 50 a blend method gives its full result.
  EXPECT_EQ(this->Mixed(12, 50.0f, 100.0f, 100.0f, effect, source), Make<TypeParam>(120, 180, 4, 120));
}

TYPED_TEST(MixStage, ANegativeGainIsLimitedAtZero) {
  const TypeParam effect = Make<TypeParam>(100, 20, 50, 100);
  const TypeParam source = Make<TypeParam>(50, 100, 50, 200);
  EXPECT_EQ(this->Mixed(kMix, 50.0f, -100.0f, 100.0f, effect, source), Make<TypeParam>(0, 40, 0, 50));
}

TEST(MixStageAtSixteenBits, MixWithStrongWeightsCutsAtOneAndZero) {
  HvTexture<R16, Rf> source(1, 1);
  HvTexture<R16, Rf> result(1, 1);
  *source.at(0, 0) = Make<R16>(20000, -100, 8192, 32767);
  *result.at(0, 0) = Make<R16>(20000, -100, 8192, 32767);
  RunMixStage(source, result, kMix, 50.0f, 102.0f, 100.0f, {0, 0, 0, 0}, nullptr);
  EXPECT_EQ(*result.at(0, 0), Make<R16>(16384, 0, 8273, 16384));
}

TEST(MixStageAtSixteenBits, MixWithinOneKeepsBrightAndNegativeValues) {
  HvTexture<R16, Rf> source(1, 1);
  HvTexture<R16, Rf> result(1, 1);
  *source.at(0, 0) = Make<R16>(20000, -100, -32768, 32767);
  *result.at(0, 0) = Make<R16>(30000, -300, -32768, 32767);
  RunMixStage(source, result, kMix, 50.0f, 100.0f, 100.0f, {0, 0, 0, 0}, nullptr);
  EXPECT_EQ(*result.at(0, 0), Make<R16>(25000, -200, -32768, 32767));
}

Rf MixedFloats(std::int32_t method, float blend, float effectGain, float sourceGain, const Rf& effect,
               const Rf& source) {
  HvTexture<Rf, Rf> from(1, 1);
  HvTexture<Rf, Rf> result(1, 1);
  *from.at(0, 0) = source;
  *result.at(0, 0) = effect;
  RunMixStage(from, result, method, blend, effectGain, sourceGain, {0, 0, 0, 0}, nullptr);
  return *result.at(0, 0);
}

// The methods of the list, gains in percent, and no limit.
TEST(MixStageInFloats, MethodsGainsAndBlends) {
  const Rf effect = MakeFloat(0.5f, -2.0f, 8.0f, 1.0f);
  const Rf source = MakeFloat(0.25f, 4.0f, 1.0f, 0.5f);
  for (const std::int32_t method : {0, -1, 19, kInt32Max})
    EXPECT_EQ(MixedFloats(method, 100.0f, 300.0f, 300.0f, effect, source), effect) << method;
  EXPECT_EQ(MixedFloats(kMix, 25.0f, 100.0f, 100.0f, effect, source), MakeFloat(0.4375f, -0.5f, 6.25f, 0.875f));
  EXPECT_EQ(MixedFloats(kMix, 50.0f, -100.0f, 300.0f, effect, source), MakeFloat(0.125f, 7.0f, -2.5f, 0.25f));
  EXPECT_EQ(MixedFloats(12, 50.0f, 100.0f, 100.0f, effect, source), MakeFloat(0.75f, 2.0f, 9.0f, 1.5f));
  EXPECT_EQ(MixedFloats(12, 75.0f, 200.0f, 100.0f, effect, source), MakeFloat(0.75f, 2.0f, 9.0f, 1.5f));
  for (std::int32_t method = 1; method < kMethodCount; ++method) {
    const auto shown = [&](const Rf& p) { return method == 8 ? withAlpha(p, 0.0f) : p; };
    EXPECT_EQ(MixedFloats(method, 0.0f, 100.0f, 100.0f, effect, source), shown(effect)) << method;
    EXPECT_EQ(MixedFloats(method, 100.0f, 100.0f, 100.0f, effect, source), shown(source)) << method;
  }
}

TEST(MixStageInFloats, AMixOfEqualPicturesChangesNothing) {
  forRandomCases(2000, [](Random& random) {
    const Rf p = FloatPixel(random, AnyCarried);
    ASSERT_EQ(MixedFloats(kMix, random.between(0.0f, 100.0f), 100.0f, 100.0f, p, p), p);
  });
}

// Of any exponent as well: sums that cancel, products that overflow or vanish, gains at their limit.
TEST(MixStageInFloats, EachMethodEqualsTheModelOnAnyPixels) {
  forRandomCases(3000, [](Random& random) {
    const auto any = random.oneIn(3) ? &AnyFinite : &AnyCarried;
    const Rf effect = FloatPixel(random, any);
    const Rf source = random.oneIn(8) ? effect : FloatPixel(random, any);
    const auto gain = [&] {
      if (random.oneIn(3)) return 100.0f;
      return random.oneIn(8) ? AnyFinite(random) : random.between(-100.0f, 500.0f);
    };
    const float blend = random.oneIn(2) ? random.between(0.0f, 100.0f) : random.oneOf({0.0f, 50.0f, 100.0f, 1e-6f});
    model::MixSettings settings{model::Depth::Float, 0, blend, gain(), gain()};
    for (settings.method = 1; settings.method < kMethodCount; ++settings.method) {
      const Rf result = MixedFloats(settings.method, blend, settings.effectGain, settings.sourceGain, effect, source);
      const model::Pixel expected =
          (settings.method == kMix ? model::MixPlain : model::MixByMethod)(settings, ModelOf(effect), ModelOf(source));
      EXPECT_EQ(ModelOf(result), expected)
          << "method " << settings.method << " blend " << blend << " gains " << settings.effectGain << " "
          << settings.sourceGain << " of " << testing::PrintToString(effect) << " and "
          << testing::PrintToString(source) << ": " << testing::PrintToString(result) << ", in the model "
          << testing::PrintToString(FromModel<Rf>(expected));
    }
  });
}

TEST(MixStageInFloats, KeepsToItsWindow) {
  HvTexture<Rf, Rf> source(4, 4);
  HvTexture<Rf, Rf> result(4, 4);
  Fill(source, MakeFloat(0.5f, 0.5f, 0.5f, 0.5f));
  Fill(result, MakeFloat(2.0f, 2.0f, 2.0f, 2.0f));
  RunMixStage(source, result, 11, 50.0f, 100.0f, 100.0f, {1, 2, 2, 3}, nullptr);
  for (std::int32_t y = 0; y < 4; ++y) {
    for (std::int32_t x = 0; x < 4; ++x) {
      const bool mixed = x >= 1 && x <= 2 && y >= 2;
      EXPECT_EQ(*result.at(x, y), mixed ? MakeFloat(1.0f, 1.0f, 1.0f, 0.5f) : MakeFloat(2.0f, 2.0f, 2.0f, 2.0f));
    }
  }
}

template <class Pixel>
std::vector<std::string> KernelsOf() {
  if (kDepth<Pixel> == model::Depth::Float) return {};
  if (sizeof(Pixel) == 8) return {"mixRow 16", "mergeRow 16", "mergeFlatRow 16"};
  return {"mixRow 8", "mergeRow 8", "mergeFlatRow 8", "mergeFlatBlendRow 8"};
}

constexpr float kBlends[] = {0.0f, 25.0f, 49.5f, 49.7f, 50.0f, 50.3f, 50.5f, 75.0f, 99.9f, 100.0f};
constexpr float kGains[][2] = {{100.0f, 100.0f}, {100.2f, 100.0f}, {100.5f, 100.0f},  {-100.0f, 500.0f},
                               {37.0f, 163.0f},  {0.0f, 0.0f},     {500.0f, -100.0f}, {1e9f, -3e8f}};

TYPED_TEST(MixStageAtAllDepths, AllMethodsBlendsAndGainsEqualTheModel) {
  using Pixel = TypeParam;
  Random random(3);
  HvTexture<Pixel, Rf> source(64, 8);
  HvTexture<Pixel, Rf> effect(64, 8);
  FillRandom(source, random);
  FillRandom(effect, random);
  KernelRunsOfCases runs;
  for (std::int32_t method = 0; method < kMethodCount; ++method) {
    for (const float blend : kBlends) {
      for (const auto& gains : kGains) {
        HvTexture<Pixel, Rf> result(64, 8);
        for (std::int32_t y = 0; y < 8; ++y)
          std::copy_n(effect.at(0, y), 64, result.at(0, y));
        const model::MixSettings settings{kDepth<Pixel>, method, blend, gains[0], gains[1]};
        const model::Picture expected = this->Expected(source, result, settings, {0, 0, 63, 7});
        const CpuLevel level(randomCpuLevel(random));
        RunMixStage(source, result, method, blend, gains[0], gains[1], {0, 0, 63, 7}, nullptr);
        ASSERT_EQ(CountDifferent(result, expected), 0)
            << HvCpuLevel() << " method " << method << " blend " << blend << " gains " << gains[0] << " " << gains[1];
        runs.note();
      }
    }
  }
  EXPECT_TRUE(runs.had(KernelsOf<Pixel>()));
}

// Boxes, edge methods, outside colours, different origins of source and result, windows inside, across and beside the
// picture, 1 to 8 threads.
TYPED_TEST(MixStageAtAllDepths, PlacesAndWindowsEqualTheModel) {
  using Pixel = TypeParam;
  KernelRunsOfCases runs;
  forRandomCases(400, [&](Random& random) {
    // Wide enough, now and then, for every kernel.
    const int most = random.oneIn(4) ? 90 : 20;
    HvTexture<Pixel, Rf> source(random.within(1, most), random.within(1, 12));
    HvTexture<Pixel, Rf> result(random.within(1, most), random.within(1, 12));
    FillRandom(source, random);
    FillRandom(result, random);
    setRandomSurroundings(random, source, storageRange<Pixel>());
    setRandomSurroundings(random, result, storageRange<Pixel>());
    result.setWriteOrigin(random.within(-9, 9), random.within(-9, 9));
    const auto gain = [&, plain = random.oneIn(2)] {
      return plain ? 100.0f : static_cast<float>(random.within(-100, 500));
    };
    const float blend = random.oneIn(3) ? 50.0f : static_cast<float>(random.within(0, 100));
    const model::MixSettings settings{kDepth<Pixel>, random.within(0, kMethodCount - 1), blend, gain(), gain()};
    const std::int32_t x = random.within(-15, 20);
    const std::int32_t y = random.within(-15, 20);
    const StageWindow window{x, y, x + random.within(0, most), y + random.within(0, 20)};
    const model::Picture expected = this->Expected(source, result, settings, window);
    const HvTexAxis before = result.horizontal;
    const ThreadCount threads(random.oneOf({1, 2, 3, 7, 8}));
    const CpuLevel level(randomCpuLevel(random));
    RunMixStage(source, result, settings.method, settings.blend, settings.effectGain, settings.sourceGain, window,
                nullptr);
    EXPECT_EQ(CountDifferent(result, expected), 0) << HvCpuLevel() << " method " << settings.method;
    EXPECT_EQ(result.horizontal.lo, before.lo);
    EXPECT_EQ(result.horizontal.originI, before.originI);
    runs.note();
  });
  EXPECT_TRUE(runs.had(KernelsOf<Pixel>()));
}

TYPED_TEST(MixStageAtAllDepths, RowsThatRunBackwardsAreMixedAlike) {
  using Pixel = TypeParam;
  Random random(6);
  HvTexture<Pixel, Rf> source(5, 4);
  HvTexture<Pixel, Rf> owner(5, 4);
  FillRandom(source, random);
  FillRandom(owner, random);
  HvTexture<Pixel, Rf> result;
  result.wrap(5, 4, owner.at(0, 3));
  result.stride = -owner.stride;
  const model::MixSettings settings{kDepth<Pixel>, 10, 30.0f, 80.0f, 120.0f};
  const model::Picture expected = this->Expected(source, result, settings, {0, 0, 4, 3});
  RunMixStage(source, result, 10, 30.0f, 80.0f, 120.0f, {0, 0, 4, 3}, nullptr);
  EXPECT_EQ(CountDifferent(result, expected), 0);
}

// An empty source reads as its outside colour.
TYPED_TEST(MixStageAtAllDepths, AnEmptySourceIsItsOutsideColour) {
  using Pixel = TypeParam;
  HvTexture<Pixel, Rf> source;
  source.release();
  source.setOutsideColour(Make<Pixel>(10, 20, 30, 0));
  HvTexture<Pixel, Rf> result(3, 2);
  Fill(result, Make<Pixel>(1, 1, 1, 1));
  RunMixStage(source, result, 12, 50.0f, 100.0f, 100.0f, {0, 0, 2, 1}, nullptr);
  for (const Pixel& pixel : PixelsOf(result))
    EXPECT_EQ(pixel, Make<Pixel>(11, 21, 31, 1));
}

// The first of three successful polls comes before the pass. A merge polls before each row and mixes two rows, Mix
// polls after each row and mixes three.
TYPED_TEST(MixStage, PollsOncePerRow) {
  using Pixel = TypeParam;
  const ThreadCount threads(1);
  const auto rowsMixed = [](std::int32_t method) {
    HvTexture<Pixel, Rf> source(2, 6);
    HvTexture<Pixel, Rf> result(2, 6);
    Fill(source, Make<Pixel>(5, 5, 5, 5));
    StopAfter stop(3);
    RunMixStage(source, result, method, 100.0f, 100.0f, 100.0f, {0, 0, 1, 5}, &stop.record);
    EXPECT_EQ(stop.asked(), 4);
    std::int32_t rows = 0;
    while (rows < 6 && *result.at(0, rows) == Make<Pixel>(5, 5, 5, 5) && *result.at(1, rows) == *result.at(0, rows))
      ++rows;
    for (std::int32_t y = rows; y < 6; ++y)
      EXPECT_EQ(*result.at(1, y), Pixel{}) << y;
    return rows;
  };
  EXPECT_EQ(rowsMixed(kMix), 3);
  EXPECT_EQ(rowsMixed(12), 2);
}

}  // namespace
}  // namespace vblur::test
