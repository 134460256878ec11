// The blur size in pixels, by project and properties.
#include "effect/BlurSize.h"

#include <array>
#include <cmath>

#include <gtest/gtest.h>

#include "tests/effect/EffectBench.h"
#include "tests/effect/PartialProject.h"

namespace vblur {
namespace {

// A project of 100 x 100 units, one pixel each, and settable conversions to pixels.
class BlurSizeOfEffect : public testing::Test, public IDSCoordMan {
 protected:
  BlurSizeOfEffect() {
    project.sizes = {{kProjectUserSizeX, 100.0},
                     {kProjectUserSizeY, 100.0},
                     {kProjectWorldSizeX, 100.0},
                     {kProjectWorldSizeY, 100.0}};
    effect->SetEffectHost(&project);
  }

  // Horizontal, vertical.
  std::array<float, 2> At(double blur, double aspect = 0.0) {
    effect->PutValue(PropertyOf(PropertyId::Blur).guid, DSVariant::Of(blur));
    effect->PutValue(PropertyOf(PropertyId::Aspect).guid, DSVariant::Of(aspect));
    return AtTime(0.0);
  }
  std::array<float, 2> AtTime(double time) {
    const BlurSize size = effect->GetBlurSize(time);
    return {size.x, size.y};
  }

  DSWorldPair ToRenderedPixels(DSWorldPair point) const override {
    return {point.x * rendered.x, point.y * rendered.y};
  }
  DSWorldPair ToFullPixels(DSWorldPair point) const override { return {point.x * full.x, point.y * full.y}; }
  DSPixelPair PixelOrigin(const IDSImage&) const override { return {}; }

  using Size = std::array<float, 2>;
  DSWorldPair rendered{1.0, 1.0};
  DSWorldPair full{1.0, 1.0};
  PartialProject project;
  ComPtr<Blur> effect = NewBlur();
};

TEST_F(BlurSizeOfEffect, IsTheBlurInPixels) {
  EXPECT_EQ(AtTime(0.0), (Size{10.0f, 10.0f}));
  EXPECT_EQ(At(720.0), (Size{720.0f, 720.0f}));
}

TEST_F(BlurSizeOfEffect, NegativeBlurIsNone) {
  EXPECT_EQ(At(-5.0), (Size{0.0f, 0.0f}));
  effect->PutCurve(PropertyOf(PropertyId::Blur).guid, host::Curve{{{0.0, 10.0}, {10.0, -10.0}}, {}});
  EXPECT_EQ(AtTime(4.0), (Size{2.0f, 2.0f}));
  EXPECT_EQ(AtTime(7.5), (Size{0.0f, 0.0f}));
}

TEST_F(BlurSizeOfEffect, AspectNarrowsOneAxisAndIsLimited) {
  EXPECT_EQ(At(12.0, 25.0), (Size{12.0f, 9.0f}));
  EXPECT_EQ(At(12.0, -25.0), (Size{9.0f, 12.0f}));
  for (const double aspect : {100.0, 250.0}) {
    EXPECT_EQ(At(12.0, aspect), (Size{12.0f, 0.0f}));
    EXPECT_EQ(At(12.0, -aspect), (Size{0.0f, 12.0f}));
  }
  effect->PutCurve(PropertyOf(PropertyId::Aspect).guid, host::Curve{{{0.0, 0.0}, {10.0, -100.0}}, {}});
  EXPECT_EQ(AtTime(5.0), (Size{6.0f, 12.0f}));
}

TEST_F(BlurSizeOfEffect, AspectIsNarrowedToAFloat) {
  const auto narrowed = static_cast<float>(1000.0 * (1.0 - static_cast<double>(0.999f)));
  EXPECT_NE(narrowed, 1.0f);
  EXPECT_EQ(At(1000.0, 99.9), (Size{1000.0f, narrowed}));
  EXPECT_EQ(At(1000.0, -99.9), (Size{narrowed, 1000.0f}));
}

TEST_F(BlurSizeOfEffect, AnUnreadableProjectCountsAsOne) {
  project.sizes.clear();
  EXPECT_EQ(AtTime(0.0), (Size{10.0f, 10.0f}));
  effect->SetEffectHost(nullptr);
  EXPECT_EQ(AtTime(0.0), (Size{10.0f, 10.0f}));
}

TEST_F(BlurSizeOfEffect, TheRatioOfTheHeightsDividesTheHorizontalSize) {
  project = PartialProject();
  EXPECT_EQ(AtTime(0.0), (Size{4.0f, 10.0f}));
}

TEST_F(BlurSizeOfEffect, TheRatioIsOneWithoutOneOfTheHeights) {
  project = PartialProject();
  project.sizes.erase(kProjectWorldSizeY);
  EXPECT_EQ(AtTime(0.0), (Size{10.0f, 10.0f}));
  project = PartialProject();
  project.sizes.erase(kProjectUserSizeY);
  EXPECT_EQ(AtTime(0.0), (Size{10.0f, 10.0f}));
}

TEST_F(BlurSizeOfEffect, TheRatioDoesNotNeedTheWidths) {
  project = PartialProject();
  project.sizes.erase(kProjectWorldSizeX);
  EXPECT_EQ(AtTime(0.0), (Size{4.0f, 10.0f}));
  project.sizes.erase(kProjectUserSizeX);
  EXPECT_EQ(AtTime(0.0), (Size{4.0f, 10.0f})) << "user units of a pixel, under the ratio";
}

TEST_F(BlurSizeOfEffect, TheProjectsPixelsAreWhole) {
  project.sizes[kProjectUserSizeX] = 100.75;
  project.sizes[kProjectUserSizeY] = 12.5;
  project.sizes[kProjectWorldSizeY] = 12.5;
  EXPECT_EQ(AtTime(0.0), (Size{static_cast<float>(static_cast<double>(100.0f / 100.75f) * 10.0),
                               static_cast<float>(static_cast<double>(12.0f / 12.5f) * 10.0)}));
}

TEST_F(BlurSizeOfEffect, AProxyShrinksIt) {
  effect->SetCoordMan(this);
  EXPECT_EQ(AtTime(0.0), (Size{10.0f, 10.0f}));
  rendered = {0.5, 0.25};
  EXPECT_EQ(AtTime(0.0), (Size{5.0f, 2.5f}));
  full = {2.0, 8.0};
  EXPECT_EQ(AtTime(0.0), (Size{2.5f, 0.3125f}));
}

TEST_F(BlurSizeOfEffect, FollowsItsCurve) {
  effect->PutCurve(PropertyOf(PropertyId::Blur).guid, host::Curve{{{0.0, 0.0}, {10.0, 80.0}}, {}});
  EXPECT_EQ(AtTime(5.0), (Size{40.0f, 40.0f}));
  EXPECT_EQ(AtTime(20.0), (Size{80.0f, 80.0f}));
}

TEST(BlurSize, DescribesRadiusSigmaAndGain) {
  const Blur effect;
  const BlurSizeFacts small = effect.DescribeBlurSize(3.0);
  EXPECT_FLOAT_EQ(static_cast<float>(small.boxRadius), 1.0f);
  // Three boxes of three taps: a variance of 2/3 each.
  EXPECT_NEAR(small.sigma, std::sqrt(2.0), 1e-6);
  EXPECT_NEAR(small.flatGain, std::pow(3.0 * 5461.0 / 16384.0, 6.0), 1e-12);
  EXPECT_NEAR(effect.DescribeBlurSize(300.0).flatGain, 0.963, 0.0005);
  EXPECT_NEAR(effect.DescribeBlurSize(3000.0).flatGain, 0.870, 0.0005);
  EXPECT_EQ(effect.DescribeBlurSize(3.0 * 8192.0).flatGain, 0.0);
  EXPECT_EQ(effect.DescribeBlurSize(0.0).sigma, 0.0);
  EXPECT_EQ(effect.DescribeBlurSize(0.0).flatGain, 1.0);
}

}  // namespace
}  // namespace vblur
