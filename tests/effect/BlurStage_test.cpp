// The blur stage: properties in, pixels out.
#include <gtest/gtest.h>

#include "tests/effect/FrameTest.h"

namespace vblur {
namespace {

class BlurStage : public FrameTest {};

TEST_F(BlurStage, ABlurOfZeroCopies) {
  bench.Set(PropertyId::Blur, 0.0);
  EXPECT_EQ(bench.Render(), kOk);
  ExpectOutput(Checks);
}

TEST_F(BlurStage, ANegativeBlurIsZero) {
  bench.Set(PropertyId::Blur, -5.0);
  EXPECT_EQ(bench.Render(), kOk);
  ExpectOutput(Checks);
}

// One white pixel on a clear picture: the output is the kernel.
class BlurStageSpread : public FrameTest {
 protected:
  BlurStageSpread() {
    Paint<Pixel8>(bench.input, kSide, kSide, [](std::int32_t x, std::int32_t y) {
      return x == kMiddle && y == kMiddle ? Pixel8{255, 255, 255, 255} : Pixel8{};
    });
  }

  static constexpr std::int32_t kMiddle = 8;
  using Ray = std::array<int, 5>;

  // From the middle outwards; the opposite direction must be equal.
  Ray Right() const { return Along(1, 0); }
  Ray Up() const { return Along(0, 1); }

  Ray Along(std::int32_t dx, std::int32_t dy) const {
    Ray ray{};
    for (std::int32_t i = 0; i < 5; ++i) {
      const auto at = [&](std::int32_t sign) {
        return At<Pixel8>(bench.output, kMiddle + sign * i * dx, kMiddle + sign * i * dy);
      };
      ray[static_cast<std::size_t>(i)] = at(1)[0];
      EXPECT_EQ(at(1), at(-1)) << i;
      EXPECT_EQ(at(1), (Pixel8{at(1)[0], at(1)[0], at(1)[0], at(1)[0]})) << i;
    }
    return ray;
  }
};

constexpr std::array<int, 5> kNotSpread{255, 0, 0, 0, 0};
// Three boxes of three taps.
constexpr std::array<int, 5> kSpreadByOne{66, 57, 28, 9, 0};

TEST_F(BlurStageSpread, AspectNarrowsOneAxisToNothing) {
  bench.Set(PropertyId::Blur, 3.0);
  for (const double aspect : {100.0, 250.0}) {
    bench.Set(PropertyId::Aspect, aspect);
    EXPECT_EQ(bench.Render(), kOk);
    EXPECT_EQ(Right(), kSpreadByOne) << aspect;
    EXPECT_EQ(Up(), (Ray{66, 0, 0, 0, 0})) << aspect;
    bench.Set(PropertyId::Aspect, -aspect);
    EXPECT_EQ(bench.Render(), kOk);
    EXPECT_EQ(Up(), kSpreadByOne) << -aspect;
    EXPECT_EQ(Right(), (Ray{66, 0, 0, 0, 0})) << -aspect;
  }
}

TEST_F(BlurStageSpread, AspectNarrowsOneAxisByItsShare) {
  bench.Set(PropertyId::Blur, 6.0);
  bench.Set(PropertyId::Aspect, 50.0);
  EXPECT_EQ(bench.Render(), kOk);
  // x: boxes of five taps give 39 37 31 20 12; y: boxes of three taps of each.
  EXPECT_EQ(Up(), (Ray{10, 9, 4, 1, 0}));
  EXPECT_EQ(Right(), (Ray{10, 9, 8, 6, 3}));
}

TEST_F(BlurStageSpread, AFieldHasHalfTheVerticalSize) {
  bench.Set(PropertyId::Blur, 6.0);
  bench.Set(PropertyId::Aspect, -100.0);
  bench.effect->SetField(1);
  EXPECT_EQ(bench.Render(), kOk);
  // The field has every other row.
  const auto inField = [&](std::int32_t row) { return int{At<Pixel8>(bench.output, kMiddle, kMiddle + 2 * row)[0]}; };
  for (std::int32_t row = -4; row < 4; ++row)
    EXPECT_EQ(inField(row), kSpreadByOne[static_cast<std::size_t>(std::abs(row))]) << row;
  EXPECT_EQ(At<Pixel8>(bench.output, kMiddle, kMiddle + 1), Marker(0, 0));
}

TEST_F(BlurStageSpread, TheSecondFieldHasHalfTheVerticalSizeToo) {
  Paint<Pixel8>(bench.input, kSide, kSide, [](std::int32_t, std::int32_t y) {
    return y == 9 ? Pixel8{255, 255, 255, 255} : Pixel8{};
  });
  bench.Set(PropertyId::Blur, 6.0);
  bench.Set(PropertyId::Aspect, -100.0);
  bench.effect->SetField(2);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(At<Pixel8>(bench.output, 3, 9)[0], 66);
  EXPECT_EQ(At<Pixel8>(bench.output, 3, 11)[0], 57);
  EXPECT_EQ(At<Pixel8>(bench.output, 3, 15)[0], 9);
  EXPECT_EQ(At<Pixel8>(bench.output, 3, 1)[0], 0);
}

TEST_F(BlurStageSpread, AnUnreadableProjectHasUnitsOfAPixel) {
  bench.project.reset();
  bench.Set(PropertyId::Blur, 3.0);
  bench.Set(PropertyId::Aspect, 100.0);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(Right(), kSpreadByOne);
}

TEST_F(BlurStageSpread, AProxyHasASmallerBlur) {
  bench.proxy = {0.5, 0.25};
  bench.Set(PropertyId::Blur, 6.0);
  bench.Set(PropertyId::Aspect, 100.0);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(Right(), kSpreadByOne);
  bench.Set(PropertyId::Blur, 12.0);
  bench.Set(PropertyId::Aspect, -100.0);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(Up(), kSpreadByOne);
}

TEST_F(BlurStageSpread, ABlurOfZeroStillMixesBack) {
  bench.Set(PropertyId::Blur, 0.0);
  bench.Set(PropertyId::MixBack, 1.0);
  bench.Set(PropertyId::Blend, 50.0);
  bench.Set(PropertyId::EffectGain, 20.0);
  EXPECT_EQ(bench.Render(), kOk);
  // Half the source plus half of a fifth of the effect.
  EXPECT_EQ(Right(), (Ray{153, 0, 0, 0, 0}));
}

TEST_F(BlurStageSpread, BlendIsLimited) {
  bench.Set(PropertyId::Blur, 3.0);
  bench.Set(PropertyId::Aspect, 100.0);
  bench.Set(PropertyId::MixBack, 1.0);
  bench.Set(PropertyId::Blend, -250.0);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(Right(), kSpreadByOne) << "the effect alone";
  bench.Set(PropertyId::Blend, 250.0);
  EXPECT_EQ(bench.Render(), kOk);
  EXPECT_EQ(Right(), kNotSpread) << "the source alone";
}

TEST_F(BlurStageSpread, WhatIsAnimatedIsThatOfTheFramesTime) {
  const auto rising = [](double from, double to) { return host::Curve{{{0.0, from}, {10.0, to}}, {}}; };
  bench.Animate(PropertyId::Blur, rising(0.0, 6.0));
  bench.Animate(PropertyId::Aspect, rising(200.0, 0.0));
  bench.Set(PropertyId::MixBack, 1.0);
  bench.Animate(PropertyId::Blend, rising(-200.0, 0.0));
  bench.Animate(PropertyId::EffectGain, rising(150.0, 50.0));
  EXPECT_EQ(bench.Render(5.0), kOk);
  EXPECT_EQ(Right(), kSpreadByOne);
  EXPECT_EQ(Up(), (Ray{66, 0, 0, 0, 0}));
}

}  // namespace
}  // namespace vblur
