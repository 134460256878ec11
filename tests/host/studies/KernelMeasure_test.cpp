// The measured impulse response against weights computed by hand.
#include "host/studies/KernelMeasure.h"

#include <array>
#include <cmath>
#include <map>

#include <gtest/gtest.h>

#include "tests/support/TestServer.h"
#include "tests/support/host/Pictures.h"

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
  constexpr double kFloat = 2e-7;
  ExpectProfile(0.0, 32, {1.0}, kFloat);
  ExpectProfile(3.75, 32, {0.25 / 3.5, 1 / 3.5, 1 / 3.5, 1 / 3.5, 0.25 / 3.5}, kFloat);
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

TEST(KernelMeasure, FloatsKeepAFlatAreaAtEverySize) {
  ExecuteContext context;
  for (const double blur : {10.0, 300.0}) {
    const KernelReport report = MeasureKernel(MakeEffect, context, blur, 32);
    EXPECT_EQ(report.facts.flatGain, 1.0) << blur;
    EXPECT_NEAR(report.profile.Sum(), 1.0, 1e-7) << blur;
    EXPECT_NEAR(report.picture.Sum(), 1.0, 1e-6) << blur;
    EXPECT_NEAR(report.profile.Sigma(), report.facts.sigma, 1e-4 * report.facts.sigma) << blur;
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

}  // namespace
}  // namespace vblur::host
