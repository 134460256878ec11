#include <gtest/gtest.h>

#include "effect/Blur.h"
#include "tests/effect/EffectBench.h"

namespace vblur {
namespace {

TEST(RampValue, TakesZeroToZeroAndOneToOne) {
  for (std::int32_t ramping = 0; ramping <= 4; ++ramping) {
    EXPECT_EQ(RampValue(0.0f, ramping), 0.0f);
    EXPECT_EQ(RampValue(1.0f, ramping), 1.0f);
  }
  EXPECT_EQ(RampValue(0.5f, 0), 0.5f);
  EXPECT_EQ(RampValue(0.5f, 1), 0.375f);
  EXPECT_EQ(RampValue(0.5f, 2), 0.625f);
  EXPECT_EQ(RampValue(0.25f, 3), 0.15625f);
}

// Two flat clips of one geometry: what a frame holds is the mix.
class Transition : public testing::Test {
 protected:
  void SetUp() override {
    Paint<Pixel8>(bench.input, 8, 8, [](std::int32_t, std::int32_t) { return Pixel8{200, 0, 0, 255}; });
    Paint<Pixel8>(bench.input2, 8, 8, [](std::int32_t, std::int32_t) { return Pixel8{0, 200, 0, 255}; });
    Paint<Pixel8>(bench.output, 8, 8, [](std::int32_t, std::int32_t) { return Pixel8{9, 9, 9, 9}; });
    bench.hasInput2 = true;
    UseAs(*bench.effect, host::EffectKind::Transition);
    bench.effect->SetDuration(10.0);
    bench.Set(PropertyId::TransitionRamping, 0.0);
    bench.Set(PropertyId::EffectScaling, 0.0);
    bench.Set(PropertyId::Blur, 0.0);
  }

  Pixel8 MiddleAt(double time) {
    EXPECT_EQ(bench.Render(time), kOk);
    return At<Pixel8>(bench.output, 4, 4);
  }

  EffectBench bench{8.0, 8.0};
};

TEST_F(Transition, GoesFromTheFirstClipToTheSecond) {
  EXPECT_EQ(MiddleAt(0.0), (Pixel8{200, 0, 0, 255}));
  EXPECT_EQ(MiddleAt(5.0), (Pixel8{101, 99, 0, 255}));
  EXPECT_EQ(MiddleAt(10.0), (Pixel8{0, 200, 0, 255}));
  EXPECT_EQ(MiddleAt(-3.0), (Pixel8{200, 0, 0, 255}));
  EXPECT_EQ(MiddleAt(30.0), (Pixel8{0, 200, 0, 255}));
}

TEST_F(Transition, FadePointsShapeTheMix) {
  bench.Set(PropertyId::StartFadingInSecondClip, 40.0);
  bench.Set(PropertyId::FinishFadingOutFirstClip, 60.0);
  EXPECT_EQ(MiddleAt(4.0), (Pixel8{200, 0, 0, 255}));
  EXPECT_EQ(MiddleAt(6.0), (Pixel8{0, 200, 0, 255}));
}

TEST_F(Transition, ANegativeSpanIsDoneBeforeItBegins) {
  bench.Set(PropertyId::StartFadingInSecondClip, 60.0);
  bench.Set(PropertyId::FinishFadingOutFirstClip, 40.0);
  EXPECT_EQ(MiddleAt(2.0), (Pixel8{0, 200, 0, 255}));
  EXPECT_EQ(MiddleAt(9.0), (Pixel8{200, 0, 0, 255}));
}

TEST_F(Transition, TheBlurPeaksInTheMiddleAndVanishesAtTheEnds) {
  const auto edge = [](std::int32_t x, std::int32_t) {
    return Pixel8{static_cast<std::uint8_t>(x < 4 ? 0 : 255), 0, 0, 0};
  };
  Paint<Pixel8>(bench.input, 8, 8, edge);
  Paint<Pixel8>(bench.input2, 8, 8, edge);
  bench.Set(PropertyId::Blur, 6.0);
  bench.Set(PropertyId::EffectScaling, 1.0);
  EXPECT_EQ(MiddleAt(0.0)[0], 255);
  const int quarter = MiddleAt(2.5)[0];
  const int middle = MiddleAt(5.0)[0];
  EXPECT_GT(quarter, middle);
  EXPECT_EQ(MiddleAt(7.5)[0], quarter);
  EXPECT_EQ(MiddleAt(10.0)[0], 255);
}

TEST_F(Transition, CrossFadeBlursTheClipsOneByOne) {
  const auto edge = [](std::int32_t x, std::int32_t) {
    return Pixel8{static_cast<std::uint8_t>(x < 4 ? 0 : 255), 0, 0, 0};
  };
  Paint<Pixel8>(bench.input, 8, 8, edge);
  bench.Set(PropertyId::Blur, 6.0);
  bench.Set(PropertyId::EffectScaling, 2.0);
  EXPECT_EQ(MiddleAt(0.0)[0], 255) << "the first clip's blur has not begun";
  EXPECT_EQ(MiddleAt(10.0), (Pixel8{0, 200, 0, 255})) << "the second clip's blur is over";
}

TEST_F(Transition, AnInterruptionBetweenThePassesLeavesTheFirstClip) {
  // Clips of different places take two passes. Of all the polls of a frame, some lie between them.
  Paint<Pixel8>(bench.input2, 8, 8, [](std::int32_t, std::int32_t) { return Pixel8{0, 200, 0, 255}; }, {1, 0});
  bool firstClipAlone = false;
  for (int polls = 1; polls < 200 && !firstClipAlone; ++polls) {
    EffectBench stopped(8.0, 8.0);
    Paint<Pixel8>(stopped.input, 8, 8, [](std::int32_t, std::int32_t) { return Pixel8{200, 0, 0, 255}; });
    Paint<Pixel8>(stopped.input2, 8, 8, [](std::int32_t, std::int32_t) { return Pixel8{0, 200, 0, 255}; }, {1, 0});
    Paint<Pixel8>(stopped.output, 8, 8, [](std::int32_t, std::int32_t) { return Pixel8{9, 9, 9, 9}; });
    stopped.hasInput2 = true;
    UseAs(*stopped.effect, host::EffectKind::Transition);
    stopped.effect->SetDuration(10.0);
    stopped.Set(PropertyId::Blur, 0.0);
    stopped.context.StopAfterPolls(polls);
    EXPECT_EQ(stopped.Render(5.0), kOk);
    firstClipAlone = true;
    for (std::int32_t y = 0; y < 8; ++y) {
      for (std::int32_t x = 0; x < 8; ++x) {
        firstClipAlone = firstClipAlone && At<Pixel8>(stopped.output, x, y) == Pixel8{200, 0, 0, 255};
      }
    }
  }
  EXPECT_TRUE(firstClipAlone);
}

TEST_F(Transition, DoesNotMixBackOrMask) {
  bench.Set(PropertyId::MixBack, 12.0);
  bench.Set(PropertyId::MaskRed, 0.0);
  EXPECT_EQ(MiddleAt(10.0), (Pixel8{0, 200, 0, 255}));
}

}  // namespace
}  // namespace vblur
