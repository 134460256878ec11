// The measured impulse response against weights worked out by hand.
#include "host/KernelMeasure.h"

#include <array>
#include <cmath>
#include <map>

#include <gtest/gtest.h>

#include "host/pictures/KernelPlot.h"
#include "host/pictures/PlotFrame.h"
#include "tests/host_files/Pictures.h"
#include "tests/support/TestServer.h"

namespace vblur::host {
namespace {

std::vector<double> Convolve(const std::vector<double>& a, const std::vector<double>& b) {
  std::vector<double> sum(a.size() + b.size() - 1);
  for (std::size_t i = 0; i < a.size(); ++i) {
    for (std::size_t j = 0; j < b.size(); ++j)
      sum[i + j] += a[i] * b[j];
  }
  return sum;
}

void ExpectProfile(double blur, std::int32_t depth, const std::vector<double>& box, double tolerance) {
  ExecuteContext context;
  const KernelProfile profile = MeasureProfile(MakeEffect, context, blur, depth);
  const auto weights = Convolve(Convolve(box, box), box);
  const auto far = static_cast<std::int32_t>(weights.size() / 2);
  for (std::int32_t x = -profile.reach; x <= profile.reach; ++x) {
    const double expected = std::abs(x) > far ? 0.0 : weights[static_cast<std::size_t>(x + far)];
    EXPECT_NEAR(profile.At(x), expected, tolerance) << "blur " << blur << ", x " << x;
  }
}

TEST(KernelMeasure, ProfilesAreThreeBoxes) {
  constexpr double kClose = 2e-4;
  ExpectProfile(0.0, 16, {1.0}, kClose);
  ExpectProfile(1.0, 16, {0.2, 0.6, 0.2}, kClose);
  ExpectProfile(6.0, 16, std::vector<double>(5, 0.2), kClose);
  // Radius 1.25: three whole taps and a quarter on each side.
  ExpectProfile(3.75, 16, {0.25 / 3.5, 1 / 3.5, 1 / 3.5, 1 / 3.5, 0.25 / 3.5}, kClose);
  ExpectProfile(6.0, 8, std::vector<double>(5, 0.2), 4e-3);
}

TEST(KernelMeasure, APictureIsTheProfileTimesItself) {
  ExecuteContext context;
  for (const double blur : {6.0, 60.0}) {
    const KernelProfile profile = MeasureProfile(MakeEffect, context, blur, 16);
    const KernelPicture picture = MeasurePicture(MakeEffect, context, blur, 16);
    EXPECT_EQ(picture.cells % 2, 1);
    EXPECT_EQ(picture.cellPixels % 2, 1);
    EXPECT_GE(picture.cells * picture.cellPixels, 2 * profile.reach + 1);
    const auto cell = [&](std::int32_t index) {
      double sum = 0.0;
      for (std::int32_t i = 0; i < picture.cellPixels; ++i)
        sum += profile.At((index - picture.cells / 2) * picture.cellPixels - picture.cellPixels / 2 + i);
      return sum / picture.cellPixels;
    };
    for (std::int32_t row = 0; row < picture.cells; ++row) {
      for (std::int32_t column = 0; column < picture.cells; ++column) {
        const double weight = picture.weights[static_cast<std::size_t>(row * picture.cells + column)];
        EXPECT_NEAR(weight, cell(row) * cell(column), picture.Peak() * 0.02) << row << " " << column;
      }
    }
  }
}

TEST(KernelMeasure, MeasuredAndComputedNumbersAgree) {
  ExecuteContext context;
  for (const double blur : {1.0, 10.0, 100.0, 300.0}) {
    const KernelReport report = MeasureKernel(MakeEffect, context, blur, 16);
    EXPECT_NEAR(report.profile.Sigma(), report.facts.sigma, 0.002 * report.facts.sigma + 0.001) << blur;
    EXPECT_NEAR(report.profile.Sum(), std::sqrt(report.facts.flatGain), 2e-4) << blur;
    EXPECT_NEAR(report.picture.Sum(), report.facts.flatGain, 4e-4) << blur;
  }
}

TEST(KernelMeasure, NumbersOfABox) {
  const auto expect = [](double radius, std::int32_t r, std::int32_t fraction, std::int32_t scale) {
    const BoxNumbers box = BoxNumbersOf(FactsOfSize(MakeEffect, radius * 3.0));
    EXPECT_EQ(box.wholeRadius, r) << radius;
    EXPECT_EQ(box.fractionQ14, fraction) << radius;
    EXPECT_EQ(box.scaleQ14, scale) << radius;
  };
  expect(0.0, 0, 0, 16384);
  expect(0.5, 0, 8192, 8192);
  expect(1.0, 1, 0, 5461);
  expect(1.25, 1, 4096, 4681);
  expect(100.0, 100, 0, 81);
}

TEST(KernelMeasure, WidthAtHalfIsStraightBetweenPixels) {
  KernelProfile profile;
  profile.reach = 3;
  profile.weights = {0.0, 0.1, 0.2, 0.4, 0.2, 0.1, 0.0};
  EXPECT_DOUBLE_EQ(profile.WidthAtHalf(), 2.0);
  profile.weights = {0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0};
  EXPECT_DOUBLE_EQ(profile.WidthAtHalf(), 1.0);
  profile.weights = {0.0, 0.0, 0.1, 0.4, 0.3, 0.0, 0.0};
  EXPECT_DOUBLE_EQ(profile.WidthAtHalf(), 2.0 / 3.0 + 1.0 + 1.0 / 3.0);
}

TEST(KernelMeasure, TheGaussianHasTheSumOfTheProfile) {
  KernelProfile profile;
  profile.reach = 1;
  profile.weights = {0.2, 0.5, 0.2};
  const Gaussian gaussian = GaussianFor(profile, 2.0);
  double sum = 0.0;
  for (int x = -30; x <= 30; ++x)
    sum += gaussian.At(x);
  EXPECT_NEAR(sum, 0.9, 1e-12);
  EXPECT_NEAR(gaussian.At(2.0) / gaussian.At(0.0), std::exp(-0.5), 1e-12);
  const Gaussian point = GaussianFor(profile, 0.0);
  EXPECT_EQ(point.At(0.0), profile.Sum());
  EXPECT_EQ(point.At(1.0), 0.0);
  const KernelDifference largest = LargestDifference(profile, point);
  EXPECT_EQ(largest.x, 0);
  EXPECT_NEAR(largest.value, -0.4, 1e-12);
}

TEST(PlotFrame, TicksAreRoundAndInRange) {
  EXPECT_EQ(TicksOf({-2.0, 2.0}, 4), (std::vector<double>{-2.0, -1.0, 0.0, 1.0, 2.0}));
  EXPECT_EQ(TicksOf({0.0, 107.0}, 6), (std::vector<double>{0.0, 20.0, 40.0, 60.0, 80.0, 100.0}));
  EXPECT_EQ(TicksOf({-868.0, 868.0}, 13).front(), -800.0);
  EXPECT_EQ(TickText(0.1, 0.05), "0.10");
  EXPECT_EQ(TickText(-20.0, 20.0), "-20");
}

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
    const auto row = static_cast<std::size_t>(image.height() - 1 - y);
    count += IsNear(image, 4 * (row * static_cast<std::size_t>(image.width()) + static_cast<std::size_t>(x)), colour);
  }
  return count;
}

TEST(KernelPlot, BarsAreAsHighAsTheWeightsAndTheCurveIsDrawn) {
  constexpr std::array<std::int32_t, 3> kBlue = {74, 143, 217};
  constexpr std::array<std::int32_t, 3> kOrange = {255, 173, 51};
  ExecuteContext context;
  const KernelReport report = MeasureKernel(MakeEffect, context, 10.0, 16);
  HostImage drawn;
  DrawKernel(report, TextPainter(), drawn);
  ASSERT_EQ(drawn.width(), 1640);
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
