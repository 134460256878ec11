// The vector form of a box against its plain twin, at every instruction set that this machine has.
#include "blur/BoxRows.h"

#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "blur/BoxFilter.h"
#include "tests/support/CpuLevel.h"

namespace vblur {
namespace {

using test::CpuLevel;
using test::forRandomCases;
using test::Random;

// Components that are random, at an end of the range, or all along a lane at one end.
template <class C>
std::vector<C> randomRows(Random& random, std::int64_t rows, std::size_t lanes) {
  constexpr int kLow = std::numeric_limits<C>::min();
  constexpr int kHigh = std::numeric_limits<C>::max();
  std::vector<C> values(static_cast<std::size_t>(rows) * lanes);
  std::vector<int> ends(lanes);
  for (int& end : ends)
    end = random.within(0, 9);
  for (std::size_t i = 0; i < values.size(); ++i) {
    const int end = ends[i % lanes];
    const int value = end == 0   ? kHigh
                      : end == 1 ? kLow
                      : end == 2 ? random.oneOf({kLow, kHigh})
                                 : random.within(kLow, kHigh);
    values[i] = static_cast<C>(value);
  }
  return values;
}

template <class C, class Row>
std::vector<Row> tableOf(std::vector<C>& values, std::size_t lanes) {
  std::vector<Row> table;
  for (std::size_t i = 0; i < values.size(); i += lanes)
    table.push_back(values.data() + i);
  return table;
}

template <class C>
void compareWithTwin(Random& random, float radius) {
  const BoxConstants box = boxConstants(radius);
  ASSERT_TRUE(boxRowsKnow(box));
  const std::int64_t count = random.within(1, 30);
  constexpr std::size_t lanes = kRowBytes / sizeof(C);
  auto in = randomRows<C>(random, boxRowsRead(box, count), lanes);
  std::vector<C> out(static_cast<std::size_t>(count) * lanes, C{99});
  const auto inRows = tableOf<C, const C*>(in, lanes);
  const auto outRows = tableOf<C, C*>(out, lanes);
  // In one stretch or in several.
  BoxRowsSums sums;
  for (std::int64_t at = 0; at < count;) {
    const std::int64_t stretch = random.oneIn(2) ? count - at : random.within(1, static_cast<int>(count - at));
    boxRows(box, sums, stretch, static_cast<std::int64_t>(inRows.size()) - at, inRows.data() + at, outRows.data() + at);
    at += stretch;
  }

  const std::vector<std::int32_t> wide(in.begin(), in.end());
  std::vector<std::int32_t> expected(lanes);
  for (std::size_t lane = 0; lane < lanes; ++lane) {
    filterBox<1>(
        box.reach(), box.reach() + count, box,
        [&](std::int64_t i) {
          static thread_local std::vector<std::int32_t> line;
          if (i == 0) {
            line.clear();
            for (std::size_t row = 0; row < inRows.size(); ++row)
              line.push_back(wide[row * lanes + lane]);
          }
          return line.data() + i;
        },
        [&](std::int64_t) { return expected.data() + lane; },
        [&](std::int64_t i) {
          const auto at = static_cast<std::size_t>(i - box.reach()) * lanes + lane;
          ASSERT_EQ(static_cast<std::int32_t>(out[at]), expected[lane])
              << HvCpuLevel() << " radius " << radius << " row " << i - box.reach() << " lane " << lane;
        });
  }
}

class BoxRows : public testing::TestWithParam<std::string> {};

TEST_P(BoxRows, EqualsThePlainBox) {
  const CpuLevel level(GetParam());
  for (const float radius :
       {0.0f,   1e-9f, 0.00005f, 0.25f,    0.4999f, 0.5f,  0.9999f, 1.0f,   1.25f,     2.0f,   31.5f,
        61.99f, 62.0f, 62.0001f, 62.9999f, 63.0f,   64.5f, 126.5f,  127.0f, 127.9999f, 128.0f, 333.3f}) {
    forRandomCases(6, [&](Random& random) {
      compareWithTwin<std::uint8_t>(random, radius);
      compareWithTwin<std::int16_t>(random, radius);
    });
  }
  forRandomCases(60, [](Random& random) {
    compareWithTwin<std::uint8_t>(random, random.between(0.0f, 140.0f));
    compareWithTwin<std::int16_t>(random, random.between(0.0f, 140.0f));
  });
}

std::vector<std::string> VectorLevels() {
  return {HvCpuLevels().begin() + 1, HvCpuLevels().end()};
}

INSTANTIATE_TEST_SUITE_P(Levels, BoxRows, testing::ValuesIn(VectorLevels()));

// What the lanes compute, written with plain numbers.
std::int32_t roundingHighMultiply(std::int32_t a, std::int32_t b) {
  return (a * b + 0x4000) >> 15;
}
std::uint32_t highMultiply(std::uint32_t a, std::uint32_t b) {
  return (a * b) >> 16;
}

// All scales that boxes of 8-bit pictures have in 16-bit lanes, for every sum that the lanes hold.
TEST(BoxRowsArithmetic, MultipliesAsThePlainBoxDoesOverTheWholeDomain) {
  constexpr int kStep = test::kShareOfCases == 1 ? 1 : 37;
  for (std::int32_t scale = 1; scale < 16384; scale += kStep) {
    // No more taps than the scale leaves room for.
    const std::int32_t most = std::min<std::int32_t>(32767, 255 * (16384 / scale + 2));
    for (std::int32_t sum = 0; sum <= most; ++sum)
      ASSERT_EQ(roundingHighMultiply(sum, 2 * scale), (sum * scale + 8192) >> 14) << sum << " " << scale;
  }
  for (std::uint32_t scale = 1; scale < 8192; scale += kStep) {
    const std::uint32_t most = std::min<std::uint32_t>(65535, 255 * (16384 / scale + 2));
    for (std::uint32_t sum = 0; sum <= most; ++sum)
      ASSERT_EQ((highMultiply(sum, 8 * scale) + 1) >> 1, (sum * scale + 8192) >> 14) << sum << " " << scale;
  }
  for (std::uint32_t frac = 0; frac < 16384; frac += kStep) {
    for (std::uint32_t ends = 0; ends <= 510; ++ends)
      ASSERT_EQ(highMultiply(ends, 4 * frac), (ends * frac) >> 14) << ends << " " << frac;
  }
}

// The largest sums of each kind of lanes: one more tap would not fit.
TEST(BoxRowsArithmetic, SumsFitTheirLanes) {
  const auto largestSum = [](std::int32_t r) { return 255 * (2 * r + 2); };
  EXPECT_LE(largestSum(62), 32767);
  EXPECT_LE(255 * (2 * 62 + 1) + 509, 32767);
  EXPECT_LE(largestSum(127), 65535);
  EXPECT_LE(255 * (2 * 127 + 1) + 510, 65535);
}

}  // namespace
}  // namespace vblur
