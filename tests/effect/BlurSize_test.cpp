#include "effect/BlurSize.h"

#include <cmath>

#include <gtest/gtest.h>

#include "effect/Blur.h"
#include "tests/effect/EffectBench.h"

namespace vblur {
namespace {

// The size that the effect tells for a project and its own properties.
class SizeBench {
 public:
  SizeBench() : host_(host::ProjectSizes{{720.0, 576.0}, {720.0, 576.0}}), coordMan_({1.0, 1.0}) {
    effect.SetEffectHost(&host_);
  }

  BlurSize At(double blur, double aspect) {
    effect.PutValue(PropertyOf(PropertyId::Blur).guid, DSVariant::Of(blur));
    effect.PutValue(PropertyOf(PropertyId::Aspect).guid, DSVariant::Of(aspect));
    return effect.GetBlurSize(0.0);
  }

  Blur effect;

 private:
  host::EffectHost host_;
  host::CoordMan coordMan_;
};

TEST(BlurSize, IsTheBlurInPixels) {
  SizeBench bench;
  EXPECT_EQ(bench.At(10.0, 0.0).x, 10.0f);
  EXPECT_EQ(bench.At(10.0, 0.0).y, 10.0f);
}

TEST(BlurSize, NegativeBlurIsNone) {
  SizeBench bench;
  EXPECT_EQ(bench.At(-5.0, 0.0).x, 0.0f);
  EXPECT_EQ(bench.At(-5.0, 0.0).y, 0.0f);
}

TEST(BlurSize, AspectNarrowsOneAxisAndIsLimited) {
  SizeBench bench;
  EXPECT_EQ(bench.At(12.0, 25.0).x, 12.0f);
  EXPECT_EQ(bench.At(12.0, 25.0).y, 9.0f);
  EXPECT_EQ(bench.At(12.0, -25.0).x, 9.0f);
  EXPECT_EQ(bench.At(12.0, -25.0).y, 12.0f);
  EXPECT_EQ(bench.At(12.0, 250.0).y, 0.0f);
  EXPECT_EQ(bench.At(12.0, 250.0).x, 12.0f);
  EXPECT_EQ(bench.At(12.0, -250.0).x, 0.0f);
}

TEST(BlurSize, AnUnreadableProjectCountsAsOne) {
  host::EffectHost host(std::nullopt);
  Blur effect;
  effect.SetEffectHost(&host);
  EXPECT_EQ(effect.GetBlurSize(0.0).x, 10.0f);
  EXPECT_EQ(effect.GetBlurSize(0.0).y, 10.0f);
  Blur withoutHost;
  EXPECT_EQ(withoutHost.GetBlurSize(0.0).x, 10.0f);
}

TEST(BlurSize, UserToWorldRatioDividesTheHorizontalSize) {
  host::EffectHost host(host::ProjectSizes{{100.0, 50.0}, {100.0, 25.0}});
  Blur effect;
  effect.SetEffectHost(&host);
  EXPECT_EQ(effect.GetBlurSize(0.0).x, 5.0f);
  EXPECT_EQ(effect.GetBlurSize(0.0).y, 10.0f);
}

TEST(BlurSize, AProxyShrinksIt) {
  host::EffectHost host(host::ProjectSizes{{100.0, 50.0}, {100.0, 50.0}});
  host::CoordMan coordMan({0.5, 0.25});
  Blur effect;
  effect.SetEffectHost(&host);
  effect.SetCoordMan(&coordMan);
  EXPECT_EQ(effect.GetBlurSize(0.0).x, 5.0f);
  EXPECT_EQ(effect.GetBlurSize(0.0).y, 2.5f);
}

TEST(BlurSize, FollowsItsCurve) {
  host::EffectHost host(host::ProjectSizes{{10.0, 10.0}, {10.0, 10.0}});
  Blur effect;
  effect.PutCurve(PropertyOf(PropertyId::Blur).guid, host::Curve{{{0.0, 0.0}, {10.0, 80.0}}, {}});
  effect.SetEffectHost(&host);
  EXPECT_EQ(effect.GetBlurSize(5.0).x, 40.0f);
  EXPECT_EQ(effect.GetBlurSize(20.0).x, 80.0f);
}

TEST(DescribeBlurSize, TellsRadiusSigmaAndGain) {
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
