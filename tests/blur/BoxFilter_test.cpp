#include "blur/BoxFilter.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/Random.h"

namespace vblur {
namespace {

using test::forRandomCases;
using test::Random;

constexpr int kLanes = 8;

// Lines side by side, with positions from 0 up.
std::vector<std::int32_t> randomLines(Random& random, std::int64_t length, int low, int high) {
  std::vector<std::int32_t> lines(static_cast<std::size_t>(length) * kLanes);
  for (std::int32_t& value : lines)
    value = random.oneIn(8) ? random.oneOf({low, high}) : random.within(low, high);
  return lines;
}

std::vector<std::int32_t> filtered(const std::vector<std::int32_t>& lines, std::int64_t a, std::int64_t b,
                                   const BoxConstants& box) {
  std::vector<std::int32_t> result(static_cast<std::size_t>(b - a) * kLanes);
  std::int64_t next = a;
  filterBox<kLanes>(
      a, b, box, [&](std::int64_t i) { return lines.data() + i * kLanes; },
      [&](std::int64_t i) { return result.data() + (i - a) * kLanes; }, [&](std::int64_t i) { EXPECT_EQ(i, next++); });
  EXPECT_EQ(next, b);
  return result;
}

// The sum of all taps at one position, in the width that they are summed in.
std::int32_t sumOfTaps(const std::vector<std::int32_t>& lines, std::int64_t x, int lane, const BoxConstants& box) {
  const auto tap = [&](std::int64_t i) { return std::int64_t{lines[static_cast<std::size_t>(i * kLanes + lane)]}; };
  std::int64_t sum = 0;
  for (std::int64_t i = x - box.r; i <= x + box.r; ++i)
    sum += tap(i);
  if (box.d != 0) {
    const std::int64_t ends = (tap(x - box.r - 1) + tap(x + box.r + 1)) * box.frac;
    sum += static_cast<std::int64_t>(std::floor(static_cast<double>(ends) / 16384.0));
  }
  return static_cast<std::int32_t>(std::floor(static_cast<double>(sum * box.scale + 8192) / 16384.0));
}

void compareWithSums(Random& random, float radius, int low, int high) {
  const BoxConstants box = boxConstants(radius);
  const std::int64_t margin = box.reach() + 1;
  const std::int64_t length = random.within(1, 40);
  const auto lines = randomLines(random, length + 2 * margin, low, high);
  const auto result = filtered(lines, margin, margin + length, box);
  for (std::int64_t x = 0; x < length; ++x) {
    for (int lane = 0; lane < kLanes; ++lane) {
      ASSERT_EQ(result[static_cast<std::size_t>(x * kLanes + lane)], sumOfTaps(lines, margin + x, lane, box))
          << "radius " << radius << " position " << x << " lane " << lane;
    }
  }
}

TEST(BoxFilter, EqualsTheSumOfItsTaps) {
  for (const float radius : {0.0f, 0.00005f, 0.25f, 0.5f, 0.9999f, 1.0f, 1.25f, 2.0f, 2.75f, 63.0f, 64.5f, 65.0f,
                             100.0f, 1000.0f, 8191.0f}) {
    forRandomCases(8, [&](Random& random) {
      compareWithSums(random, radius, 0, 255);
      compareWithSums(random, radius, -32768, 32767);
    });
  }
  forRandomCases(400, [](Random& random) { compareWithSums(random, random.between(0.0f, 80.0f), -32768, 32767); });
}

TEST(BoxFilter, HoldsItsProductsAtTheEndsOfTheRange) {
  for (int step = 0; step < 183; ++step) {
    const float radius = 0.21875f * static_cast<float>(step);
    for (const int value : {-32768, 32767, 0, 255}) {
      Random random(1);
      compareWithSums(random, radius, value, value);
    }
  }
}

TEST(BoxFilter, OfNoWidthGivesEachValueBack) {
  Random random(1);
  const auto lines = randomLines(random, 20, kInt32Min / 16384, kInt32Max / 16384 - 1);
  const auto result = filtered(lines, 0, 19, boxConstants(0.0f));
  EXPECT_TRUE(std::equal(result.begin(), result.end(), lines.begin()));
}

TEST(BoxFilter, OfAHalfWeighsAQuarterAHalfAndAQuarter) {
  std::vector<std::int32_t> lines(7 * kLanes, 0);
  lines[3 * kLanes] = 100;
  const auto result = filtered(lines, 1, 6, boxConstants(0.5f));
  EXPECT_EQ(result[0], 0);
  EXPECT_EQ(result[1 * kLanes], 25);
  EXPECT_EQ(result[2 * kLanes], 50);
  EXPECT_EQ(result[3 * kLanes], 25);
  EXPECT_EQ(result[4 * kLanes], 0);
}

TEST(BoxFilter, TruncatesTheTwoEndTapsTogetherAndRoundsTheSum) {
  // Weights 1/4, 1/2, 1/4 on 1, 0, 1: the ends make 2 * 8192 >> 14 = 1, halved and rounded 1.
  std::vector<std::int32_t> lines(4 * kLanes, 0);
  lines[0] = lines[2 * kLanes] = 1;
  EXPECT_EQ(filtered(lines, 1, 2, boxConstants(0.5f))[0], 1);
  // On 1, 1, 0 the end is truncated to 0, and the half is rounded up.
  lines[kLanes] = 1;
  lines[2 * kLanes] = 0;
  EXPECT_EQ(filtered(lines, 1, 2, boxConstants(0.5f))[0], 1);
  // On -1, 0, 0 the truncation rounds down, and -1/2 is rounded up.
  lines[0] = -1;
  lines[kLanes] = 0;
  EXPECT_EQ(filtered(lines, 1, 2, boxConstants(0.5f))[0], 0);
  lines[2 * kLanes] = -2;
  EXPECT_EQ(filtered(lines, 1, 2, boxConstants(0.5f))[0], -1);
}

TEST(BoxFilter, LeavesAnEndTapOfATinyFractionWithoutWeight) {
  std::vector<std::int32_t> lines(4 * kLanes, 30000);
  lines[kLanes] = 0;
  EXPECT_EQ(filtered(lines, 1, 2, boxConstants(0.00005f))[0], 0);
}

TEST(BoxFilter, ReadsOnlyItsReach) {
  const BoxReach whole = boxReach(10, 20, boxConstants(2.0f));
  EXPECT_EQ(whole.first, 8);
  EXPECT_EQ(whole.last, 23);
  const BoxReach fraction = boxReach(10, 20, boxConstants(2.5f));
  EXPECT_EQ(fraction.first, 7);
  EXPECT_EQ(fraction.last, 23);
}

TEST(BoxFilter, DoesNothingOverNoPositions) {
  const std::vector<std::int32_t> lines(kLanes, 1);
  EXPECT_TRUE(filtered(lines, 5, 5, boxConstants(3.0f)).empty());
}

}  // namespace
}  // namespace vblur
