#include "host/jobs/FrameRangeText.h"

#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "tests/support/host/FailureOf.h"

namespace vblur::host {
namespace {

TEST(FrameRangeText, ReadsRanges) {
  EXPECT_EQ(ParseFrameRange("7"), (FrameRange{7, 7, 1}));
  EXPECT_EQ(ParseFrameRange("-7"), (FrameRange{-7, -7, 1}));
  EXPECT_EQ(ParseFrameRange("1-48"), (FrameRange{1, 48, 1}));
  EXPECT_EQ(ParseFrameRange("0001-0048x2"), (FrameRange{1, 48, 2}));
  EXPECT_EQ(ParseFrameRange("-5-5"), (FrameRange{-5, 5, 1}));
  EXPECT_EQ(ParseFrameRange("-10--5"), (FrameRange{-10, -5, 1}));
  EXPECT_EQ(ParseFrameRange("-2147483648-2147483647x2147483647").Count(), 3);
}

TEST(FrameRangeText, RefusesNonsense) {
  const auto failure = [](const std::string& text) { return UsageFailureOf([&] { ParseFrameRange(text); }); };
  for (const std::string text :
       {"", "x", "1-", "-", "1-2-3", "1x2", "1-48x", "1-48 ", " 1", "1..5", "+1", "1-48x2x2", "1,2", "1.5"}) {
    EXPECT_EQ(failure(text),
              "frames: expected a frame or a range such as 7, 1-48, 1-48x2 or -5-5, found \"" + text + "\"");
  }
  EXPECT_EQ(failure("5-4"), "frames: expected a last frame that is not before the first, found \"5-4\"");
  EXPECT_EQ(failure("1-4x0"), "frames: expected a step of at least 1, found \"1-4x0\"");
  EXPECT_EQ(failure("1-4x-1"), "frames: expected a step of at least 1, found \"1-4x-1\"");
  for (const std::string text : {"2147483648", "1-2147483648", "-2147483649-0", "1-2x99999999999999999999"}) {
    EXPECT_EQ(failure(text), "frames: expected numbers from -2147483648 to 2147483647, found \"" + text + "\"");
  }
}

TEST(FrameRangeText, RandomRangesComeBack) {
  std::mt19937 random(3);
  std::uniform_int_distribution<std::int32_t> any(std::numeric_limits<std::int32_t>::min());
  for (int i = 0; i < 2000; ++i) {
    FrameRange range{any(random), any(random), 1 + static_cast<std::int32_t>(random() % 5)};
    if (range.last < range.first) std::swap(range.first, range.last);
    if (i % 4 == 0) range.last = range.first;
    EXPECT_EQ(ParseFrameRange(FormatFrameRange(range)), range);
  }
  EXPECT_EQ(FormatFrameRange({7, 7, 1}), "7");
  EXPECT_EQ(FormatFrameRange({-5, 5, 1}), "-5-5");
  EXPECT_EQ(FormatFrameRange({1, 48, 2}), "1-48x2");
}

}  // namespace
}  // namespace vblur::host
