// The box on floats against exact rational numbers.
#include "blur/ExactBox.h"

#include <bit>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/Random.h"

namespace vblur::test {
namespace {

__extension__ using Wide = __int128;

std::vector<float> plainBox(const std::vector<float>& line, float radius) {
  const ExactBox box = exactBox(radius);
  const auto n = static_cast<std::int64_t>(line.size()) - box.reach() - box.r - 1;
  std::vector<float> out(static_cast<std::size_t>(n));
  exactBoxRows(line.data(), n, 1, box, out.data());
  return out;
}

std::vector<float> randomLine(Random& random, std::int64_t length, float most) {
  std::vector<float> line(static_cast<std::size_t>(length));
  for (float& v : line) {
    // Every magnitude that the step holds whole.
    v = random.between(-most, most);
    if (random.oneIn(3)) v *= std::ldexp(1.0f, -random.within(0, 20));
    if (random.oneIn(10)) v = random.oneOf({0.0f, 1.0f, most, -most});
  }
  return line;
}

// How far `result` is from the weighted mean of the components in steps, in units in the last place of a float. All
// numbers are whole: f is a multiple of 2^-24 for radii up to 256 and of 2^-30 below a half.
double unitsFromMean(const std::vector<float>& line, std::int64_t at, float radius, float result) {
  const ExactBox box = exactBox(radius);
  constexpr int kFractionBits = 26;
  const double f = static_cast<double>(radius - static_cast<float>(box.r));
  const auto wholeF = static_cast<std::int64_t>(std::ldexp(f, kFractionBits));
  const double steps = std::ldexp(1.0, box.step);
  const auto held = [&](std::int64_t i) { return Wide{inSteps(line[static_cast<std::size_t>(i)], steps)}; };
  Wide sum = 0;
  for (std::int64_t i = at - box.r; i <= at + box.r; ++i)
    sum += held(i) << kFractionBits;
  if (box.d != 0) sum += (held(at - box.reach()) + held(at + box.reach())) * wholeF;
  const Wide width = (Wide{2 * box.r + 1} << kFractionBits) + 2 * wholeF;
  const double exact = static_cast<double>(sum) / static_cast<double>(width);
  // The rest of the division in whole numbers: what `result` in steps is away from the mean.
  const auto resultInSteps = static_cast<Wide>(std::ldexp(static_cast<double>(result), box.step));
  const double wholeDistance = static_cast<double>(sum - resultInSteps * width) / static_cast<double>(width);
  const double part = std::ldexp(static_cast<double>(result), box.step) - static_cast<double>(resultInSteps);
  const double unit = std::ldexp(1.0, std::ilogb(exact == 0.0 ? 1.0 : exact) - 23);
  return std::abs(wholeDistance - part) / unit;
}

TEST(ExactBox, RoundsTheExactMeanOnce) {
  double worst = 0.0;
  forRandomCases(3000, [&](Random& random) {
    const float radius = random.oneIn(3) ? random.oneOf({0.0f, 0.5f, 1.0f, 2.25f, 10.0f, 33.375f, 100.5f})
                                         : std::ldexp(static_cast<float>(random.within(0, 1 << 16)), -9);
    const ExactBox box = exactBox(radius);
    const std::int64_t length = 2 * box.reach() + 12;
    const auto line = randomLine(random, length, random.oneOf({1.0f, 8.0f, kMostCarried}));
    const auto out = plainBox(line, radius);
    for (std::size_t i = 0; i < out.size(); ++i) {
      const double units = unitsFromMean(line, static_cast<std::int64_t>(i) + box.reach(), radius, out[i]);
      ASSERT_LE(units, 0.5 + 1e-6) << "radius " << radius << " position " << i << " is " << out[i];
      worst = std::max(worst, units);
    }
  });
  // The comparison sees a rounding: it is not trivially small.
  EXPECT_GT(worst, 0.45);
}

TEST(ExactBox, KeepsAFlatLineToTheLastBitAtEverySize) {
  forRandomCases(2000, [](Random& random) {
    const float radius = random.oneIn(4) ? static_cast<float>(random.within(0, 400)) : random.between(0.0f, 400.0f);
    // From the least value that is a whole number of steps at this size.
    const ExactBox box = exactBox(radius);
    const float least = std::ldexp(1.0f, 23 - box.step);
    float value = random.oneOf({1.0f, 0.18f, 65504.0f, std::numbers::pi_v<float>, least, 2.5e-2f});
    if (random.oneIn(2)) value = -value;
    const std::vector<float> line(static_cast<std::size_t>(2 * box.reach() + 4), value);
    for (const float v : plainBox(line, radius))
      ASSERT_EQ(v, value) << "radius " << radius;
  });
}

TEST(ExactBox, GivesTheSameBitsWhereverALineBegan) {
  forRandomCases(300, [](Random& random) {
    const float radius = random.between(0.0f, 40.0f);
    const ExactBox box = exactBox(radius);
    const auto line = randomLine(random, 2 * box.reach() + 80, kMostCarried);
    const auto whole = plainBox(line, radius);
    const int skipped = random.within(1, 60);
    const auto part = plainBox({line.begin() + skipped, line.end()}, radius);
    for (std::size_t i = 0; i < part.size(); ++i)
      ASSERT_EQ(std::bit_cast<std::uint32_t>(part[i]),
                std::bit_cast<std::uint32_t>(whole[i + static_cast<std::size_t>(skipped)]));
  });
}

TEST(ExactBox, IsAsFineAsItsTapsAllow) {
  EXPECT_EQ(exactBox(0.0f).step, 46);
  EXPECT_EQ(exactBox(0.75f).step, 46);
  EXPECT_EQ(exactBox(1.0f).step, 44);    // 3 taps
  EXPECT_EQ(exactBox(2.0f).step, 43);    // 5
  EXPECT_EQ(exactBox(3.0f).step, 43);    // 7
  EXPECT_EQ(exactBox(4.0f).step, 42);    // 9
  EXPECT_EQ(exactBox(127.5f).step, 38);  // 255
  EXPECT_EQ(exactBox(128.0f).step, 37);  // 257
  // The largest sums of each size fit 64 bits.
  for (std::int64_t r = 0; r < (std::int64_t{1} << 31); r = 2 * r + 1) {
    const ExactBox box = exactBox(static_cast<float>(r));
    const double sum = static_cast<double>(2 * std::int64_t{box.r} + 1) * 65504.0 * std::ldexp(1.0, box.step);
    EXPECT_LT(sum, 9223372036854775808.0) << r;
  }
}

TEST(ExactBox, SumsComponentsUpToALimitInDoubles) {
  for (std::int64_t r = 0; r < (std::int64_t{1} << 31); r = 2 * r + 1) {
    const ExactBox box = exactBox(static_cast<float>(r));
    const double most = std::ldexp(kMostInDoubles, box.step);
    // Every integer up to 2^53 is a double, and those from 2^52 on are no finer.
    EXPECT_LE(static_cast<double>(2 * std::int64_t{box.r} + 2) * most, 0x1p53) << r;
    EXPECT_LE(0x1.8p52 + most, 0x1p53) << r;
  }
}

TEST(ExactBox, WeighsTheTapsAtItsEndsByTheFraction) {
  // Weights 1/4, 1/2, 1/4.
  const auto out = plainBox({0, 0, 1, 0, 0, 0, 0}, 0.5f);
  EXPECT_EQ(out[0], 0.25f);
  EXPECT_EQ(out[1], 0.5f);
  EXPECT_EQ(out[2], 0.25f);
  EXPECT_EQ(out[3], 0.0f);
  // A third each.
  EXPECT_EQ(plainBox({0, 0, 0, 3, 0, 0, 0}, 1.0f)[1], 1.0f);
}

TEST(ExactBox, CarriesNumbersAlone) {
  EXPECT_EQ(carried(std::numeric_limits<float>::quiet_NaN()), 0.0f);
  EXPECT_EQ(carried(std::numeric_limits<float>::infinity()), 65504.0f);
  EXPECT_EQ(carried(-std::numeric_limits<float>::infinity()), -65504.0f);
  EXPECT_EQ(carried(65504.01f), 65504.0f);
  EXPECT_EQ(carried(-1e30f), -65504.0f);
  EXPECT_EQ(carried(65503.996f), 65503.996f);
  EXPECT_EQ(carried(-0.25f), -0.25f);
  EXPECT_EQ(carried(1e-40f), 1e-40f);
}

// A component between two steps enters as the nearer one, as the even one halfway.
TEST(ExactBox, RoundsComponentsToSteps) {
  EXPECT_EQ(inSteps(2.5f, 1.0), 2);
  EXPECT_EQ(inSteps(3.5f, 1.0), 4);
  EXPECT_EQ(inSteps(-2.5f, 1.0), -2);
  EXPECT_EQ(inSteps(2.75f, 1.0), 3);
  EXPECT_EQ(inSteps(65504.0f, std::ldexp(1.0, 46)), std::int64_t{65504} << 46);
}

}  // namespace
}  // namespace vblur::test
