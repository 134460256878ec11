// Quotients by constants against the division.
#include "composite/ExactQuotients.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include <gtest/gtest.h>

#include "image/Pixels.h"
#include "tests/support/Random.h"

namespace vblur::test {
namespace {

TEST(ExactQuotients, EqualTheDivisionOverTheirWholeDomains) {
  for (std::uint32_t v = 0; v <= 65535; ++v)
    ASSERT_EQ(exact::over255(v), v / 255) << v;
  for (std::int32_t v = -(1 << 22); v <= 1 << 22; ++v)
    ASSERT_EQ(exact::smallOver255(v), v / 255) << v;
}

// Scaling by a power of two changes no significant bit of either: one binade covers all.
TEST(ExactQuotients, RoundedOnesEqualTheDivisionOfEveryFloat) {
  constexpr std::uint32_t kOne = 0x3F800000;
  constexpr std::uint32_t kTwo = 0x40000000;
  for (const float divisor : {255.0f, 3.0f * 255.0f, 3.0f * 16384.0f}) {
    for (std::uint32_t bits = kOne; bits < kTwo; bits += kShareOfCases) {
      const auto v = std::bit_cast<float>(bits);
      ASSERT_EQ(exact::rounded(v, divisor), v / divisor) << v << " by " << divisor;
      ASSERT_EQ(exact::rounded(-v, divisor), -v / divisor) << v << " by " << divisor;
    }
  }
}

// The quotients are monotonic: equality on both sides of each step is equality everywhere.
TEST(ExactQuotients, WideOnesEqualTheDivisionOnBothSidesOfEachStep) {
  constexpr std::int64_t kStep = kShareOfCases == 1 ? 1 : 61;
  const auto below = [](std::int64_t v) { return static_cast<std::int32_t>(std::max<std::int64_t>(v, kInt32Min)); };
  for (std::int64_t v = 255; v <= kInt32Max; v += 255 * kStep) {
    const auto step = static_cast<std::int32_t>(v);
    ASSERT_EQ(exact::wideOver255(step), step / 255) << v;
    ASSERT_EQ(exact::wideOver255(step - 1), (step - 1) / 255) << v;
    ASSERT_EQ(exact::wideOver255(below(-v)), below(-v) / 255) << v;
    ASSERT_EQ(exact::wideOver255(below(-v + 1)), below(-v + 1) / 255) << v;
  }
  ASSERT_EQ(exact::wideOver255(kInt32Max), kInt32Max / 255);
  ASSERT_EQ(exact::wideOver255(kInt32Min), kInt32Min / 255);
  for (std::uint32_t v = 32767; v <= 0x7FFFFFFFu - 32767; v += 32767) {
    ASSERT_EQ(exact::over32767(v), v / 32767) << v;
    ASSERT_EQ(exact::over32767(v - 1), (v - 1) / 32767) << v;
  }
  ASSERT_EQ(exact::over32767(0x7FFFFFFFu), 0x7FFFFFFFu / 32767);
  ASSERT_EQ(exact::over32767(0), 0u);
}

}  // namespace
}  // namespace vblur::test
