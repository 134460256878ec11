// The three boxes in one sweep against three plain ones, at every instruction set of this machine.
#include "blur/BoxSweep.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "tests/blur/StripKernels.h"
#include "tests/support/KernelRuns.h"

namespace vblur::test {
namespace {

// Random components, ends of the range, and lanes that are constant at an end.
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

// Components of every magnitude, halfway between two steps, and the largest.
template <>
std::vector<float> randomRows<float>(Random& random, std::int64_t rows, std::size_t lanes) {
  std::vector<float> values(static_cast<std::size_t>(rows) * lanes);
  std::vector<float> most(lanes);
  for (float& lane : most)
    lane = random.oneOf({1.0f, 1e-9f, 1e-30f, 100.0f, 65504.0f});
  for (std::size_t i = 0; i < values.size(); ++i) {
    values[i] = random.between(-1.0f, 1.0f) * most[i % lanes];
    if (random.oneIn(12)) {
      values[i] = random.oneOf({0.0f, -0.0f, kMostCarried, -kMostCarried, std::ldexp(1.5f, -random.within(30, 47)),
                                std::ldexp(-2.5f, -random.within(30, 47)), 1e-44f});
    }
  }
  return values;
}

// Rows as above; floats up to kMostInDoubles in those before one of them, and in some lanes at the limit throughout.
template <class C>
struct StripRows {
  StripRows(Random& random, std::int64_t rows, std::size_t lanes)
      : values(randomRows<C>(random, rows, lanes)),
        firstLarge(random.oneIn(3) ? 0 : random.within(0, 2 * static_cast<int>(rows))) {
    if constexpr (std::is_same_v<C, float>) {
      for (std::size_t i = 0; i < std::min(values.size(), static_cast<std::size_t>(firstLarge) * lanes); ++i) {
        const std::size_t lane = i % lanes;
        values[i] = lane < 2 ? (lane == 0 ? kMostInDoubles : -kMostInDoubles) : limited(values[i]);
      }
    }
  }
  static float limited(float v) { return clampTo(v, -kMostInDoubles, kMostInDoubles); }

  std::vector<C> values;
  std::int64_t firstLarge;
};

template <class C, class Row>
std::vector<Row> tableOf(C* first, std::size_t rows, std::size_t lanes) {
  std::vector<Row> table;
  for (std::size_t i = 0; i < rows; ++i)
    table.push_back(first + i * lanes);
  return table;
}

template <class C>
bool sameBits(C a, C b) {
  using Bytes = std::array<unsigned char, sizeof(C)>;
  return std::bit_cast<Bytes>(a) == std::bit_cast<Bytes>(b);
}

template <class C>
void compareWithTwin(Random& random, float radius) {
  const auto box = sweptBox<C>(radius);
  ASSERT_TRUE(sweepKnows(box));
  const std::size_t rowBytes = random.oneIn(2) ? 64 : random.oneIn(2) ? 128 : 256;
  const std::size_t lanes = rowBytes / sizeof(C);
  const std::int64_t count = random.within(1, 30);
  const std::int64_t steps = count + 3 * BoxSweep::taps(box);
  StripRows<C> strips(random, steps, lanes);
  std::vector<C>& in = strips.values;
  // Streamed results have to be vector-aligned.
  const auto produced = static_cast<std::size_t>(count);
  std::vector<C> memory(produced * lanes + 128 / sizeof(C), C{99});
  const auto misplaced = (64 - reinterpret_cast<std::uintptr_t>(memory.data()) % 64) % 64 / sizeof(C);
  C* const out = memory.data() + misplaced;
  const auto inRows = tableOf<C, const C*>(in.data(), static_cast<std::size_t>(steps), lanes);
  const auto outRows = tableOf<C, C*>(out, produced, lanes);
  BoxSweep sweep(box, rowBytes, sizeof(C));
  ASSERT_TRUE(sweep.isReady());
  // Two strips, each in one stretch or in several.
  for (int strip = 0; strip < 2; ++strip) {
    for (SweepRows rows{0, 0, random.oneIn(2)}; rows.to < steps;) {
      rows.from = rows.to;
      rows.to = random.oneIn(3) ? steps : std::min<std::int64_t>(steps, rows.from + random.within(1, 80));
      rows.large = rows.to > strips.firstLarge;
      sweep.advance(rows, inRows.data(), outRows.data());
    }
  }
  for (std::size_t lane = 0; lane < lanes; ++lane) {
    PlainLine<C> line;
    for (const C* row : inRows)
      line.push_back(row[lane]);
    const PlainLine<C> expected = boxed(boxed(boxed(line, box), box), box);
    for (std::size_t i = 0; i < produced; ++i) {
      ASSERT_TRUE(sameBits(outRows[i][lane], static_cast<C>(expected[i])))
          << HvCpuLevel() << " radius " << radius << " row " << i << " lane " << lane << " of " << lanes;
    }
  }
  EXPECT_EQ(memory.back(), C{99});
}

void compareAllWithTwin(Random& random, float radius) {
  compareWithTwin<std::uint8_t>(random, radius);
  compareWithTwin<std::int16_t>(random, radius);
  compareWithTwin<std::int32_t>(random, radius);
  compareWithTwin<float>(random, radius);
}

class BoxSweepLevels : public AtEachLevel {};

TEST_P(BoxSweepLevels, EqualsThreePlainBoxes) {
  for (const float radius :
       {0.0f,  1e-9f,    0.00005f, 0.25f, 0.4999f, 0.5f,   0.9999f, 1.0f,      1.25f,  2.0f,   31.5f, 61.99f,
        62.0f, 62.0001f, 62.9999f, 63.0f, 64.5f,   126.5f, 127.0f,  127.9999f, 128.0f, 129.5f, 333.3f}) {
    forRandomCases(2, [&](Random& random) { compareAllWithTwin(random, radius); });
  }
  forRandomCases(30, [](Random& random) { compareAllWithTwin(random, random.between(0.0f, 140.0f)); });
  EXPECT_TRUE(kernelsRan({"boxSweep 8", "boxSweep 16", "boxSweep 32", "boxSweep float"}));
}

INSTANTIATE_TEST_SUITE_P(Levels, BoxSweepLevels, testing::ValuesIn(vectorLevels()), levelName);

// What the lanes compute, written with plain numbers.
std::int32_t roundingHighMultiply(std::int32_t a, std::int32_t b) {
  return (a * b + 0x4000) >> 15;
}
std::uint32_t highMultiply(std::uint32_t a, std::uint32_t b) {
  return (a * b) >> 16;
}

// Every scale and every sum of 8-bit boxes in 16-bit lanes.
TEST(BoxSweepArithmetic, MultipliesAsThePlainBoxDoesOverTheWholeDomain) {
  constexpr int kStep = kShareOfCases == 1 ? 1 : 37;
  for (std::int32_t scale = 1; scale < 16384; scale += kStep) {
    // The largest sum that the scale allows.
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

// SplitSums keep sum * scale + 8192, its low 14 bits in a lane of their own.
TEST(BoxSweepArithmetic, SplitSumsCarryAtMostOne) {
  for (std::int32_t r = 128; r < 8192; ++r) {
    const std::int32_t scale = boxConstants(static_cast<float>(r)).scale;
    ASSERT_LE(255 * scale, 16383) << r;
    ASSERT_LE(16383 + 255 * scale, 32767) << r;
  }
}

// ((in + out) * frac >> 14) - out fits 16 bits for all 16-bit components, and equals the sum of two products.
TEST(BoxSweepArithmetic, WeightedEndsWithoutTheOneThatLeavesFit16Bits) {
  for (const std::int32_t frac : {1, 2, 8191, 8192, 8193, 16382, 16383}) {
    for (std::int32_t in = -32768; in <= 32767; in += in < -32700 || in > 32600 ? 1 : 97) {
      for (std::int32_t out = -32768; out <= 32767; out += out < -32700 || out > 32600 ? 1 : 89) {
        const std::int32_t more = (((in + out) * frac) >> 14) - out;
        ASSERT_EQ((in * frac + out * (frac - 16384)) >> 14, more);
        ASSERT_TRUE(more >= -32768 && more <= 32767) << in << " " << out << " " << frac;
        ASSERT_EQ((2 * (in * (2 * frac) + out * (2 * frac - 32768))) >> 16, more);
      }
    }
  }
}

// ScaledSums keep kTimes * (sum * scale + 8192) in 32 bits.
TEST(BoxSweepArithmetic, MultipliedSumsFit32BitsAndHoldTheResult) {
  for (const std::int64_t scale : {1, 24, 63, 127, 5461, 8191, 8192, 10923, 16383}) {
    const std::int64_t times = scale <= 8191 ? 4 : 2;
    ASSERT_LE(times * scale, 32767);
    const std::int64_t most = 32767 * (16384 / scale);
    for (std::int64_t sum = -32768 * (16384 / scale); sum <= most; sum += sum < -most + 9999 ? 1 : 9973) {
      const std::int64_t kept = times * (sum * scale + 8192);
      ASSERT_EQ(kept, static_cast<std::int32_t>(kept)) << sum << " " << scale;
      ASSERT_EQ(kept >> (times == 4 ? 16 : 15), (sum * scale + 8192) >> 14) << sum << " " << scale;
    }
  }
}

// Interleaving the halves of a block three times restores the order of its components.
TEST(BoxSweepArithmetic, ThreeInterleavesKeepTheOrder) {
  for (int place = 0; place < 8; ++place) {
    int mixed = place;
    for (int box = 0; box < 3; ++box)
      mixed = mixed % 4 * 2 + mixed / 4;
    EXPECT_EQ(mixed, place);
  }
}

// withWeightyEnds changes no result.
TEST(BoxSweepArithmetic, EndsWithoutWeightDoNotMatter) {
  const BoxConstants box = boxConstants(7.00001f);
  ASSERT_EQ(box.d, 1);
  ASSERT_EQ(box.frac, 0);
  std::vector<std::int32_t> line(60);
  for (std::size_t i = 0; i < line.size(); ++i)
    line[i] = static_cast<std::int32_t>(i * i * 7919 % 65536) - 32768;
  const std::vector<std::int32_t> withEnds = boxed(line, box);
  const std::vector<std::int32_t> without = boxed(line, withWeightyEnds(box));
  for (std::size_t i = 0; i < withEnds.size(); ++i)
    ASSERT_EQ(withEnds[i], without[i + 1]);
}

// Only a box without a fraction has full scale, so that its results are copies.
TEST(BoxSweepArithmetic, FullWeightHasNoFraction) {
  for (float radius = 0.0f; radius < 0.0001f; radius = std::nextafter(radius + 1e-9f, 1.0f)) {
    const BoxConstants box = boxConstants(radius);
    if (box.scale == 16384) {
      ASSERT_EQ(box.frac, 0) << radius;
    }
  }
}

// The largest sums of each kind of lanes: one more tap would not fit.
TEST(BoxSweepArithmetic, SumsFitTheirLanes) {
  const auto largestSum = [](std::int32_t r) { return 255 * (2 * r + 2); };
  EXPECT_LE(largestSum(62), 32767);
  EXPECT_LE(255 * (2 * 62 + 1) + 509, 32767);
  EXPECT_LE(largestSum(127), 65535);
  EXPECT_LE(255 * (2 * 127 + 1) + 510, 65535);
}

}  // namespace
}  // namespace vblur::test
