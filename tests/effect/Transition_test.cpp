// Mix, scale and passes of a transition.
#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "tests/effect/EffectBench.h"
#include "tests/effect/OpenBlur.h"

namespace vblur {
namespace {

constexpr Pixel8 kFirst{200, 0, 0, 255};
constexpr Pixel8 kSecond{0, 200, 0, 255};

// Two flat clips of one geometry, 10 units long, linear ramp, no blur: the output is the mix.
class Transition : public testing::Test {
 protected:
  Transition() {
    bench.PaintClips<Pixel8>(8, 8, kFirst, kSecond);
    Begin(bench);
    bench.Set(PropertyId::TransitionRamping, 0.0);
    bench.Set(PropertyId::EffectScaling, 0.0);
    bench.Set(PropertyId::Blur, 0.0);
  }

  static void Begin(EffectBench& bench) {
    UseAs(*bench.effect, host::EffectKind::Transition);
    bench.effect->SetDuration(10.0);
  }

  Pixel8 MiddleAt(double time) {
    EXPECT_EQ(bench.Render(time), kOk);
    return At<Pixel8>(bench.output, 4, 4);
  }
  // Horizontal overscan after rendering at a time.
  double SizeAfter(double time) {
    EXPECT_EQ(bench.Render(time), kOk);
    return bench.Overscan(time)[0];
  }

  EffectBench bench{8.0, 8.0};
};

TEST_F(Transition, RampsTakeZeroToZeroAndOneToOne) {
  for (std::int32_t ramping = 0; ramping <= 4; ++ramping) {
    EXPECT_EQ(RampValue(0.0f, ramping), 0.0f);
    EXPECT_EQ(RampValue(1.0f, ramping), 1.0f);
  }
}

TEST_F(Transition, RampsAreLinearInOutAndBoth) {
  EXPECT_EQ(RampValue(0.25f, 0), 0.25f);
  EXPECT_EQ(RampValue(0.25f, 1), 0.109375f);
  EXPECT_EQ(RampValue(0.25f, 2), 0.296875f);
  EXPECT_EQ(RampValue(0.25f, 3), 0.15625f);
  EXPECT_EQ(RampValue(0.25f, 4), 0.25f);
  EXPECT_EQ(RampValue(0.25f, -1), 0.25f);
  EXPECT_EQ(RampValue(-0.5f, 1), 0.625f);
  EXPECT_EQ(RampValue(1.5f, 2), 0.375f);
}

TEST_F(Transition, GoesFromTheFirstClipToTheSecond) {
  EXPECT_EQ(MiddleAt(0.0), kFirst);
  EXPECT_EQ(MiddleAt(5.0), (Pixel8{101, 99, 0, 255}));
  EXPECT_EQ(MiddleAt(10.0), kSecond);
  EXPECT_EQ(MiddleAt(-3.0), kFirst);
  EXPECT_EQ(MiddleAt(30.0), kSecond);
}

TEST_F(Transition, TheMixIsRamped) {
  bench.Set(PropertyId::TransitionRamping, 3.0);
  // Progress 0.25 ramps to 0.15625: 39 of 255.
  EXPECT_EQ(MiddleAt(2.5), (Pixel8{170, 30, 0, 255}));
}

TEST_F(Transition, TheDefaultsMeetInTheMiddle) {
  EffectBench deep(8.0, 8.0);
  deep.PaintClips<Pixel16>(8, 8, {0, 0, 0, 0}, {16384, -16384, 32767, 16384});
  Begin(deep);
  deep.Set(PropertyId::Blur, 0.0);
  EXPECT_EQ(deep.Render(5.0), kOk);
  // A mix of 0.5: 16383 of 32767.
  EXPECT_EQ(At<Pixel16>(deep.output, 4, 4), (Pixel16{8191, -8191, 16383, 8191}));
  deep.Set(PropertyId::Blur, 12.0);
  EXPECT_EQ(deep.Render(5.0), kOk);
  EXPECT_EQ(deep.Overscan(5.0)[0], 12.0) << "a scale of 1";
}

TEST_F(Transition, FadePointsShapeTheMix) {
  bench.Set(PropertyId::StartFadingInSecondClip, 40.0);
  bench.Set(PropertyId::FinishFadingOutFirstClip, 60.0);
  EXPECT_EQ(MiddleAt(4.0), kFirst);
  EXPECT_EQ(MiddleAt(5.0), (Pixel8{101, 99, 0, 255}));
  EXPECT_EQ(MiddleAt(6.0), kSecond);
}

TEST_F(Transition, ANegativeSpanIsDoneBeforeItBegins) {
  bench.Set(PropertyId::StartFadingInSecondClip, 60.0);
  bench.Set(PropertyId::FinishFadingOutFirstClip, 40.0);
  EXPECT_EQ(MiddleAt(2.0), kSecond);
  EXPECT_EQ(MiddleAt(4.0), kSecond);
  EXPECT_EQ(MiddleAt(4.5), (Pixel8{51, 149, 0, 255}));
  EXPECT_EQ(MiddleAt(6.0), kFirst);
  EXPECT_EQ(MiddleAt(9.0), kFirst);
}

TEST_F(Transition, ASpanOfNothingIsAStep) {
  bench.Set(PropertyId::StartFadingInSecondClip, 50.0);
  bench.Set(PropertyId::FinishFadingOutFirstClip, 50.0);
  EXPECT_EQ(MiddleAt(4.9), kFirst);
  EXPECT_EQ(MiddleAt(5.1), kSecond);
}

TEST_F(Transition, ADurationOfZeroIsOverAtOnce) {
  bench.effect->SetDuration(0.0);
  EXPECT_EQ(MiddleAt(-1.0), kFirst);
  EXPECT_EQ(MiddleAt(1.0), kSecond);
}

TEST_F(Transition, FadingInAndOutGrowsToTheMiddleAndFallsBack) {
  bench.Set(PropertyId::Blur, 10.0);
  bench.Set(PropertyId::EffectScaling, 1.0);
  EXPECT_EQ(SizeAfter(0.0), 0.0);
  EXPECT_EQ(SizeAfter(1.25), 2.5);
  EXPECT_EQ(SizeAfter(2.5), 5.0);
  EXPECT_EQ(SizeAfter(5.0), 10.0);
  EXPECT_EQ(SizeAfter(7.5), 5.0);
  EXPECT_EQ(SizeAfter(10.0), 0.0);
}

TEST_F(Transition, TheScaleIsRamped) {
  bench.Set(PropertyId::Blur, 10.0);
  bench.Set(PropertyId::EffectScaling, 1.0);
  bench.Set(PropertyId::TransitionRamping, 1.0);
  EXPECT_EQ(SizeAfter(5.0), 7.5);
  EXPECT_EQ(SizeAfter(7.5), static_cast<double>(20.0f - 10.0f * 2.0f * 0.75f * 0.75f * 1.25f));
  bench.Set(PropertyId::TransitionRamping, 2.0);
  EXPECT_EQ(SizeAfter(2.5), 5.9375);
}

TEST_F(Transition, FadePointsLeaveTheScaleAlone) {
  bench.Set(PropertyId::Blur, 10.0);
  bench.Set(PropertyId::EffectScaling, 1.0);
  bench.Set(PropertyId::StartFadingInSecondClip, 40.0);
  bench.Set(PropertyId::FinishFadingOutFirstClip, 60.0);
  EXPECT_EQ(SizeAfter(2.5), 5.0);
  EXPECT_EQ(SizeAfter(5.0), 10.0);
  EXPECT_EQ(SizeAfter(7.5), 5.0);
}

TEST_F(Transition, WithoutScalingTheBlurIsWhole) {
  bench.Set(PropertyId::Blur, 10.0);
  EXPECT_EQ(SizeAfter(0.0), 10.0);
  EXPECT_EQ(SizeAfter(2.5), 10.0);
}

TEST_F(Transition, AnUnknownScalingKeepsTheScale) {
  bench.Set(PropertyId::Blur, 10.0);
  bench.Set(PropertyId::EffectScaling, 1.0);
  EXPECT_EQ(SizeAfter(2.5), 5.0);
  for (const double unknown : {3.0, -1.0}) {
    bench.Set(PropertyId::EffectScaling, unknown);
    EXPECT_EQ(SizeAfter(5.0), 5.0) << unknown;
    EXPECT_EQ(SizeAfter(0.0), 5.0) << unknown;
  }
}

TEST_F(Transition, TheOverscanIsThatOfTheFrameBefore) {
  bench.Set(PropertyId::Blur, 10.0);
  bench.Set(PropertyId::EffectScaling, 1.0);
  EXPECT_EQ(SizeAfter(2.5), 5.0);
  EXPECT_EQ(bench.Overscan(5.0), (std::array{5.0, 5.0})) << "the time of the question does not move the scale";
  bench.Set(PropertyId::EffectScaling, 2.0);
  EXPECT_EQ(SizeAfter(2.5), 7.5) << "what the second clip was blurred with";
}

TEST_F(Transition, AnotherUseHasAScaleOfOne) {
  bench.Set(PropertyId::Blur, 10.0);
  bench.Set(PropertyId::EffectScaling, 1.0);
  EXPECT_EQ(SizeAfter(2.5), 5.0);
  UseAs(*bench.effect, host::EffectKind::Filter);
  EXPECT_EQ(SizeAfter(2.5), 10.0);
}

TEST_F(Transition, AnInterruptionBetweenThePassesLeavesTheFirstClip) {
  // Different origins take two passes; some number of polls ends between them.
  bool firstClipAlone = false;
  for (int polls = 1; polls < 200 && !firstClipAlone; ++polls) {
    EffectBench stopped(8.0, 8.0);
    stopped.PaintClips<Pixel8>(8, 8, kFirst, kSecond);
    stopped.input2.Place(AtOrigin(1, 0));
    Begin(stopped);
    stopped.Set(PropertyId::Blur, 0.0);
    stopped.context.StopAfterPolls(polls);
    EXPECT_EQ(stopped.Render(5.0), kOk);
    firstClipAlone = true;
    for (std::int32_t y = 0; y < 8; ++y) {
      for (std::int32_t x = 0; x < 8; ++x)
        firstClipAlone = firstClipAlone && At<Pixel8>(stopped.output, x, y) == kFirst;
    }
  }
  EXPECT_TRUE(firstClipAlone);
}

TEST_F(Transition, DoesNotMixBackOrMask) {
  bench.Set(PropertyId::MixBack, 12.0);
  bench.Set(PropertyId::MaskRed, 0.0);
  EXPECT_EQ(MiddleAt(10.0), kSecond);
}

TEST_F(Transition, AnEffectThatMixesNoInputsRendersTheFirstClip) {
  auto* const alone = new OpenBlur();
  bench.effect = ComPtr<Blur>::Own(alone);
  alone->transitionMixesInputs = 0;
  Begin(bench);
  bench.Set(PropertyId::EffectScaling, 2.0);
  EXPECT_EQ(MiddleAt(10.0), kFirst);
}

TEST_F(Transition, AnUnusableSecondClipIsClear) {
  UnusableImage unusable(bench.input2);
  ASSERT_EQ(bench.Render(5.0), kOk);
  bench.effect->SetInput2(&unusable);
  ASSERT_EQ(bench.effect->RenderFrame(5.0), kOk);
  EXPECT_EQ(At<Pixel8>(bench.output, 4, 4), (Pixel8{101, 0, 0, 128}));
}

TEST_F(Transition, AFieldIsMixedInItsRowsAndRegion) {
  bench.effect->SetField(2);
  bench.effect->SetROI(2, 2, 3, 4);
  for (const double scaling : {0.0, 2.0}) {
    bench.PaintClips<Pixel8>(8, 8, kFirst, kSecond);
    bench.Set(PropertyId::EffectScaling, scaling);
    ASSERT_EQ(bench.Render(5.0), kOk);
    for (std::int32_t y = 0; y < 8; ++y) {
      for (std::int32_t x = 0; x < 8; ++x) {
        const bool written = x >= 2 && x < 5 && (y == 3 || y == 5);
        EXPECT_EQ(At<Pixel8>(bench.output, x, y), written ? (Pixel8{101, 99, 0, 255}) : (Pixel8{9, 9, 9, 9}))
            << x << " " << y << " scaling " << scaling;
      }
    }
  }
}

// Clips of one column each. The spread shows each clip's blur, the rounding whether they were mixed before it.
class TransitionPasses : public testing::Test {
 protected:
  static constexpr std::int32_t kColumn = 16;

  TransitionPasses() {
    Paint<Pixel8>(bench.input, 32, 4, [](std::int32_t x, std::int32_t) {
      return x == kColumn ? Pixel8{255, 0, 0, 0} : Pixel8{};
    });
    Paint<Pixel8>(bench.input2, 32, 4, [](std::int32_t x, std::int32_t) {
      return x == kColumn ? Pixel8{0, 255, 0, 0} : Pixel8{};
    });
    Paint<Pixel8>(bench.output, 32, 4, [](std::int32_t, std::int32_t) { return Pixel8{9, 9, 9, 9}; });
    bench.hasInput2 = true;
    UseAs(*bench.effect, host::EffectKind::Transition);
    bench.effect->SetDuration(10.0);
    bench.Set(PropertyId::TransitionRamping, 0.0);
    bench.Set(PropertyId::Aspect, 100.0);
  }

  // Red and green from the column to the right; the left must be equal.
  std::vector<std::array<int, 2>> SpreadAt(double time, std::int32_t columns) {
    EXPECT_EQ(bench.Render(time), kOk);
    std::vector<std::array<int, 2>> spread;
    for (std::int32_t x = kColumn; x < kColumn + columns; ++x) {
      const auto pixel = At<Pixel8>(bench.output, x, 2);
      spread.push_back({pixel[0], pixel[1]});
      EXPECT_EQ(At<Pixel8>(bench.output, 2 * kColumn - x, 1), pixel) << x;
    }
    return spread;
  }
  using Spread = std::vector<std::array<int, 2>>;
  // Both clips through boxes of three taps, mixed half and half before or after the blur.
  const Spread mixedFirst{{34, 33}, {29, 28}, {14, 14}, {5, 5}, {0, 0}};
  const Spread blurredFirst{{34, 32}, {29, 28}, {15, 13}, {5, 4}, {0, 0}};

  EffectBench bench{32.0, 4.0};
};

TEST_F(TransitionPasses, CrossFadeBlursTheClipsOneByOne) {
  bench.Set(PropertyId::Blur, 12.0);
  bench.Set(PropertyId::EffectScaling, 2.0);
  // The first clip has boxes of 3 taps (66 57 28 9), the second of 7 (27 26 24 21 15 11 7 4 2). The mix is 63/255.
  EXPECT_EQ(SpreadAt(2.5, 9), (Spread{{50, 6}, {43, 6}, {22, 5}, {7, 5}, {0, 3}, {0, 2}, {0, 1}, {0, 0}, {0, 0}}));
  EXPECT_EQ(SpreadAt(0.0, 2), (Spread{{255, 0}, {0, 0}})) << "the first clip's blur has not begun";
  EXPECT_EQ(SpreadAt(10.0, 2), (Spread{{0, 255}, {0, 0}})) << "the second clip's blur is over";
}

TEST_F(TransitionPasses, FadePointsOffCentreShapeTheMixAndNotTheBlur) {
  bench.Set(PropertyId::Blur, 6.0);
  bench.Set(PropertyId::EffectScaling, 1.0);
  bench.Set(PropertyId::StartFadingInSecondClip, 20.0);
  bench.Set(PropertyId::FinishFadingOutFirstClip, 60.0);
  // Scale 0.5: boxes of 3 taps. Mix 0.125: columns of 224 and 31 are blurred.
  EXPECT_EQ(SpreadAt(2.5, 5), (Spread{{58, 8}, {50, 7}, {25, 3}, {8, 1}, {0, 0}}));
  // At 6 the mix is 1.
  EXPECT_EQ(SpreadAt(6.0, 1)[0][0], 0);
}

TEST_F(TransitionPasses, ClipsOfOneGeometryAreMixedFirst) {
  bench.Set(PropertyId::Blur, 3.0);
  bench.Set(PropertyId::EffectScaling, 0.0);
  EXPECT_EQ(SpreadAt(5.0, 5), mixedFirst);
}

TEST_F(TransitionPasses, ClipsThatLieElsewhereAreBlurredFirst) {
  bench.Set(PropertyId::Blur, 3.0);
  bench.Set(PropertyId::EffectScaling, 0.0);
  constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();
  const auto blurredAt = [&](const host::ImageRecord& first, const host::ImageRecord& second) {
    bench.input.Place(first);
    bench.input2.Place(second);
    return SpreadAt(5.0, 5);
  };
  const auto sized = [](double width, double height) { return InWorld({0.0, 0.0}, {width, height}); };
  EXPECT_EQ(blurredAt({}, {}), mixedFirst);
  EXPECT_EQ(blurredAt({}, InWorld({7.0, 7.0}, {32.0, 4.0})), mixedFirst) << "a place in the world is no origin";
  EXPECT_EQ(blurredAt({}, AtOrigin(0, 1)), blurredFirst);
  EXPECT_EQ(blurredAt({}, sized(33.0, 4.0)), blurredFirst);
  EXPECT_EQ(blurredAt({}, sized(32.0, 5.0)), blurredFirst);
  EXPECT_EQ(blurredAt(sized(kNotANumber, 4.0), sized(kNotANumber, 4.0)), blurredFirst);
  // The second clip one column to the right.
  bench.input.Place({});
  bench.input2.Place(AtOrigin(1, 0));
  ASSERT_EQ(bench.Render(5.0), kOk);
  EXPECT_EQ(At<Pixel8>(bench.output, kColumn, 2), (Pixel8{34, 28, 0, 0}));
  EXPECT_EQ(At<Pixel8>(bench.output, kColumn + 2, 2), (Pixel8{15, 28, 0, 0}));
}

}  // namespace
}  // namespace vblur
