#include "host/properties/Curve.h"

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace vblur::host {
namespace {

Curve Ramp(Interpolation interpolation) {
  return {{{0.0, 10.0}, {4.0, 50.0}, {6.0, 20.0}}, interpolation};
}

TEST(Curve, HoldsBeforeTheFirstAndAfterTheLastKey) {
  for (const auto interpolation : {Interpolation::Linear, Interpolation::Hold, Interpolation::Smooth}) {
    EXPECT_EQ(Ramp(interpolation).At(-100.0), 10.0);
    EXPECT_EQ(Ramp(interpolation).At(6.5), 20.0);
  }
}

TEST(Curve, MeetsItsKeysExactly) {
  for (const auto interpolation : {Interpolation::Linear, Interpolation::Hold, Interpolation::Smooth}) {
    for (const CurveKey& key : Ramp(interpolation).keys)
      EXPECT_EQ(Ramp(interpolation).At(key.time), key.value);
  }
}

TEST(Curve, IsStraightBetweenLinearKeys) {
  EXPECT_EQ(Ramp(Interpolation::Linear).At(1.0), 20.0);
  EXPECT_EQ(Ramp(Interpolation::Linear).At(3.0), 40.0);
  EXPECT_EQ(Ramp(Interpolation::Linear).At(5.0), 35.0);
}

TEST(Curve, HoldKeepsAValueUntilTheNextKey) {
  EXPECT_EQ(Ramp(Interpolation::Hold).At(std::nextafter(4.0, 0.0)), 10.0);
  EXPECT_EQ(Ramp(Interpolation::Hold).At(5.999), 50.0);
}

TEST(Curve, SmoothEasesOutOfAndIntoEveryKey) {
  const Curve curve = Ramp(Interpolation::Smooth);
  EXPECT_EQ(curve.At(2.0), 30.0);
  EXPECT_EQ(curve.At(1.0), 10.0 + 40.0 * (0.25 * 0.25 * 2.5));
  constexpr double kStep = 1e-6;
  for (const CurveKey& key : curve.keys) {
    EXPECT_NEAR((curve.At(key.time + kStep) - key.value) / kStep, 0.0, 1e-3);
    EXPECT_NEAR((curve.At(key.time - kStep) - key.value) / kStep, 0.0, 1e-3);
  }
}

TEST(Curve, StaysBetweenItsNeighbours) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> value(-700.0, 700.0);
  for (int i = 0; i < 2000; ++i) {
    const Curve curve{{{0.0, value(random)}, {1.0, value(random)}},
                      i % 2 == 0 ? Interpolation::Linear : Interpolation::Smooth};
    const auto [low, high] = std::minmax(curve.keys[0].value, curve.keys[1].value);
    const double at = curve.At(std::uniform_real_distribution<double>(0.0, 1.0)(random));
    EXPECT_GE(at, low - 1e-9);
    EXPECT_LE(at, high + 1e-9);
  }
}

TEST(Curve, IsConstantBetweenEqualKeys) {
  const Curve curve{{{0.1, 1.0 / 3.0}, {7.3, 1.0 / 3.0}}, Interpolation::Linear};
  for (int step = 0; step < 800; ++step)
    EXPECT_EQ(curve.At(0.01 * step), 1.0 / 3.0);
}

TEST(Curve, StaysFiniteBetweenTheLargestNumbers) {
  constexpr double kLargest = std::numeric_limits<double>::max();
  const Curve curve{{{0.0, -kLargest}, {1.0, kLargest}}, Interpolation::Linear};
  EXPECT_EQ(curve.At(0.0), -kLargest);
  EXPECT_EQ(curve.At(0.5), 0.0);
}

}  // namespace
}  // namespace vblur::host
