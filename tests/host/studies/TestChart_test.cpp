#include "host/studies/TestChart.h"

#include <gtest/gtest.h>

#include "tests/support/host/Pictures.h"

namespace vblur::host {
namespace {

TEST(TestChart, HasEverySizeAndDepth) {
  for (const std::int32_t depth : {8, 16, 32}) {
    for (const auto& [width, height] : {std::pair{1, 1}, {1, 50}, {50, 1}, {3, 2}, {320, 180}}) {
      HostImage chart;
      DrawTestChart(chart, depth, width, height, 0);
      EXPECT_EQ(chart.Width(), width);
      EXPECT_EQ(chart.Height(), height);
      EXPECT_EQ(chart.Depth(), depth);
    }
  }
}

TEST(TestChart, TheTopIsBarsFromWhiteToBlack) {
  HostImage chart;
  DrawTestChart(chart, 16, 320, 180, 0);
  const std::vector<std::int32_t> all = Components(chart);
  const std::size_t row = std::size_t{179} * 320 * 4;
  for (std::size_t c = 0; c < 4; ++c)
    EXPECT_EQ(all[row + c], 16384);
  for (std::size_t c = 0; c < 3; ++c)
    EXPECT_EQ(all[row + 319 * 4 + c], 0);
  EXPECT_EQ(all[row + 319 * 4 + 3], 16384);
}

TEST(TestChart, FloatsAreTheOtherDepthsBeforeTheirRounding) {
  HostImage chart;
  HostImage rounded;
  DrawTestChart(chart, 32, 160, 90, 3);
  DrawTestChart(rounded, 16, 160, 90, 3);
  const std::vector<float> all = Floats(chart);
  bool hasFractions = false;
  for (std::size_t i = 0; i < all.size(); ++i) {
    ASSERT_NEAR(all[i] * 16384.0f, static_cast<float>(Component(rounded, i)), 0.501f) << i;
    hasFractions = hasFractions || all[i] * 16384.0f != static_cast<float>(Component(rounded, i));
  }
  EXPECT_TRUE(hasFractions);
}

TEST(TestChart, ColoursGoOnWhereItIsTransparent) {
  HostImage chart;
  DrawTestChart(chart, 8, 640, 360, 0);
  const auto all = Components(chart);
  int coloured = 0;
  int soft = 0;
  for (std::size_t i = 0; i < all.size(); i += 4) {
    coloured += all[i + 3] == 0 && all[i] + all[i + 1] + all[i + 2] > 0;
    soft += all[i + 3] > 0 && all[i + 3] < 255;
  }
  EXPECT_GT(coloured, 1000);
  EXPECT_GT(soft, 1000);
}

TEST(TestChart, MovesAndComesBack) {
  HostImage first;
  HostImage second;
  HostImage loop;
  DrawTestChart(first, 8, 320, 180, 0);
  DrawTestChart(second, 8, 320, 180, 1);
  DrawTestChart(loop, 8, 320, 180, -100);
  EXPECT_NE(Components(first), Components(second));
  EXPECT_EQ(Components(first), Components(loop));
}

}  // namespace
}  // namespace vblur::host
