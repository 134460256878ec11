#include "host/drawing/KernelPlot.h"

#include <array>
#include <cmath>
#include <map>

#include <gtest/gtest.h>

#include "tests/support/TestServer.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/SystemPainter.h"

namespace vblur::host {
namespace {

TEST(KernelPlot, NamesEveryNumber) {
  ExecuteContext context;
  const KernelReport report = MeasureKernel(MakeEffect, context, 10.0, 16);
  std::map<std::string, std::string> numbers;
  for (const KernelNumber& number : KernelNumbers(report))
    numbers[number.name] = number.value;
  EXPECT_EQ(numbers["Size (Blur)"], "10");
  EXPECT_EQ(numbers["Radius of each of 3 boxes an axis"], "3.3333 px");
  EXPECT_EQ(numbers["r, whole taps each side"], "3");
  EXPECT_EQ(numbers["Fraction, end taps"], "0.3333 (5461 / 16384)");
  EXPECT_EQ(numbers["Scale of a box"], "2137 / 16384");
  EXPECT_EQ(numbers.size(), 13u);
}

bool IsNear(const HostImage& image, std::size_t index, const std::array<std::int32_t, 3>& colour) {
  for (std::size_t c = 0; c < 3; ++c) {
    if (std::abs(Component(image, index + c) - colour[c]) > 6) return false;
  }
  return true;
}

// How many pixels of a column have this colour, among the 500 of the profile's plot.
std::int32_t Height(const HostImage& image, std::int32_t x, const std::array<std::int32_t, 3>& colour) {
  std::int32_t count = 0;
  for (std::int32_t y = 150; y < 650; ++y) {
    const auto row = static_cast<std::size_t>(image.Height() - 1 - y);
    count += IsNear(image, 4 * (row * static_cast<std::size_t>(image.Width()) + static_cast<std::size_t>(x)), colour);
  }
  return count;
}

TEST(KernelPlot, NumbersOfFloatsAreNotFixedPoint) {
  ExecuteContext context;
  const auto numberOf = [&](std::int32_t depth, const std::string& name) {
    for (const KernelNumber& number : KernelNumbers(MeasureKernel(MakeEffect, context, 3.75, depth))) {
      if (number.name == name) return number.value;
    }
    return std::string();
  };
  EXPECT_EQ(numberOf(16, "Scale of a box"), "4681 / 16384");
  EXPECT_EQ(numberOf(32, "Scale of a box"), "1 / 3.5000");
  EXPECT_EQ(numberOf(16, "Fraction, end taps"), "0.2500 (4096 / 16384)");
  EXPECT_EQ(numberOf(32, "Fraction, end taps"), "0.2500");
  EXPECT_EQ(numberOf(16, "Gain of a flat area"), "0.99982");
  EXPECT_EQ(numberOf(32, "Gain of a flat area"), "1.00000");
}

TEST(KernelPlot, BarsAreAsHighAsTheWeightsAndTheCurveIsDrawn) {
  constexpr std::array<std::int32_t, 3> kBlue = {74, 143, 217};
  constexpr std::array<std::int32_t, 3> kOrange = {255, 173, 51};
  ExecuteContext context;
  const KernelReport report = MeasureKernel(MakeEffect, context, 10.0, 16);
  HostImage drawn;
  DrawKernel(report, SystemPainter(), drawn);
  ASSERT_EQ(drawn.Width(), 1640);
  // The plot runs from 570 to 1612, and from -15.5 to 15.5 across.
  const double top = 1.1 * GaussianFor(report.profile, report.facts.sigma).peak;
  for (const std::int32_t x : {0, 1, -1}) {
    const auto column = static_cast<std::int32_t>(570 + 1042 * (x + 15.5) / 31.0);
    EXPECT_NEAR(Height(drawn, column, kBlue), 500.0 * report.profile.At(x) / top, 3.0) << x;
    EXPECT_GE(Height(drawn, column, kOrange), 1) << x;
  }
  EXPECT_EQ(Height(drawn, 575, kBlue), 0);
}

}  // namespace
}  // namespace vblur::host
