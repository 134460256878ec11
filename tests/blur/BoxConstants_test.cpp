#include "blur/BoxConstants.h"

#include <cmath>

#include <gtest/gtest.h>

namespace vblur {

void PrintTo(const BoxConstants& box, std::ostream* out) {
  *out << "{r " << box.r << ", d " << box.d << ", scale " << box.scale << ", frac " << box.frac << "}";
}

namespace {

double gainOf(float radius) {
  const BoxConstants box = boxConstants(radius);
  return box.scale * (2.0 * radius + 1.0) / 16384.0;
}

TEST(BoxConstants, OfTheRadiiThatEverybodyMeets) {
  EXPECT_EQ(boxConstants(0.0f), (BoxConstants{{0, 0}, 16384, 0}));
  EXPECT_EQ(boxConstants(0.5f), (BoxConstants{{0, 1}, 8192, 8192}));
  EXPECT_EQ(boxConstants(1.0f), (BoxConstants{{1, 0}, 5461, 0}));
  EXPECT_EQ(boxConstants(1.25f), (BoxConstants{{1, 1}, 4681, 4096}));
  EXPECT_EQ(boxConstants(100.0f), (BoxConstants{{100, 0}, 81, 0}));
  EXPECT_EQ(boxConstants(1000.0f), (BoxConstants{{1000, 0}, 8, 0}));
  EXPECT_EQ(boxConstants(4096.0f), (BoxConstants{{4096, 0}, 1, 0}));
  EXPECT_EQ(boxConstants(8191.0f), (BoxConstants{{8191, 0}, 1, 0}));
  EXPECT_EQ(boxConstants(8192.0f), (BoxConstants{{8192, 0}, 0, 0}));
  EXPECT_EQ(boxConstants(100000.0f), (BoxConstants{{100000, 0}, 0, 0}));
}

TEST(BoxConstants, OfATinyFractionKeepTheExtraTaps) {
  EXPECT_EQ(boxConstants(0.00005f), (BoxConstants{{0, 1}, 16382, 0}));
  EXPECT_EQ(boxConstants(1.0f / 16384.0f), (BoxConstants{{0, 1}, 16382, 1}));
  EXPECT_EQ(boxConstants(1e-9f), (BoxConstants{{0, 1}, 16384, 0}));
}

TEST(BoxConstants, OfRadiiBelowZeroAreWhatTheFormulasGive) {
  EXPECT_EQ(boxConstants(-0.25f), (BoxConstants{{0, 1}, 32768, -4096}));
  EXPECT_EQ(boxConstants(-0.5f), (BoxConstants{{0, 1}, kInt32Min, -8192}));
  EXPECT_EQ(boxConstants(-1.0f), (BoxConstants{{-1, 0}, -16384, 0}));
  EXPECT_EQ(boxConstants(-1.25f), (BoxConstants{{-1, 1}, -10922, -4096}));
}

TEST(BoxConstants, LoseTheGainThatTheirTruncationCosts) {
  EXPECT_NEAR(gainOf(100.0f), 0.9937, 0.00005);
  EXPECT_NEAR(std::pow(gainOf(100.0f), 6), 0.963, 0.0005);
  EXPECT_NEAR(gainOf(1000.0f), 0.9771, 0.00006);
  EXPECT_NEAR(std::pow(gainOf(1000.0f), 6), 0.870, 0.0005);
  EXPECT_NEAR(gainOf(4096.0f), 0.5001, 0.00005);
  EXPECT_EQ(gainOf(8192.0f), 0.0);
}

TEST(BoxConstants, NeverGiveAGainAboveOne) {
  for (int i = 0; i < 200000; ++i) {
    const float radius = static_cast<float>(i) / 16.0f;
    ASSERT_LE(gainOf(radius), 1.0) << radius;
    ASSERT_LT(boxConstants(radius).frac, 16384) << radius;
  }
}

TEST(BoxConstants, GiveTheReachOfABox) {
  EXPECT_EQ(boxConstants(2.0f).reach(), 2);
  EXPECT_EQ(boxConstants(2.5f).reach(), 3);
  EXPECT_EQ(boxConstants(2.0f).margin(3), 9);
  EXPECT_EQ(boxConstants(2.5f).margin(3), 12);
  EXPECT_EQ(boxConstants(2.5f).margin(2), 8);
}

}  // namespace
}  // namespace vblur
