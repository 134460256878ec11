#include "host/jobs/FrameRangeText.h"

#include <limits>
#include <random>
#include <set>

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

std::vector<std::int32_t> All(const FrameList& frames) {
  std::vector<std::int32_t> all;
  for (std::int64_t i = 0; i < frames.Count(); ++i)
    all.push_back(frames.FrameAt(i));
  return all;
}

using Frames = std::vector<std::int32_t>;

TEST(FrameRangeTextLists, NameFramesInTheirOrder) {
  EXPECT_EQ(All(ParseFrames("7")), (Frames{7}));
  EXPECT_EQ(All(ParseFrames("1,3,5-9x2")), (Frames{1, 3, 5, 7, 9}));
  EXPECT_EQ(All(ParseFrames("9,-2--1,4")), (Frames{9, -2, -1, 4}));
  EXPECT_EQ(ParseFrames("9,-2--1,4").First(), -2);
  EXPECT_EQ(ParseFrames("9,-2--1,4").Last(), 9);
  EXPECT_EQ(ParseFrames("1-48"), FrameList(FrameRange{1, 48, 1}));
  EXPECT_TRUE(ParseFrames("1-9x2,20").Contains(7));
  EXPECT_FALSE(ParseFrames("1-9x2,20").Contains(8));
}

// A rough pass first, then the rest.
TEST(FrameRangeTextLists, RenderEachFrameOnce) {
  EXPECT_EQ(All(ParseFrames("1-9x4,1-9")), (Frames{1, 5, 9, 2, 3, 4, 6, 7, 8}));
  EXPECT_EQ(All(ParseFrames("3,3,3")), (Frames{3}));
  EXPECT_EQ(All(ParseFrames("1-9x2,2-10x2")), (Frames{1, 3, 5, 7, 9, 2, 4, 6, 8, 10}));
  EXPECT_EQ(UsageFailureOf([] { ParseFrames("1-2000000,5"); }), "frames: 2000001 frames, expected at most 1000000");
}

TEST(FrameRangeTextLists, OpenEndsAndAllAreWhatExists) {
  const Frames existing{-3, 1, 2, 3, 10, 12, 14};
  const auto chosen = [&](const std::string& text) {
    const FrameChoice choice = FrameChoice::Parse(text);
    EXPECT_TRUE(choice.IsOpen()) << text;
    return All(choice.Among(existing));
  };
  EXPECT_EQ(chosen("all"), existing);
  EXPECT_EQ(chosen("11-"), (Frames{11, 12, 13, 14}));
  EXPECT_EQ(chosen("8-x3"), (Frames{8, 11, 14}));
  EXPECT_EQ(chosen("-1-,20"), (Frames{-1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 20}));
  EXPECT_EQ(chosen("2,all"), (Frames{2, -3, 1, 3, 10, 12, 14}));
  EXPECT_FALSE(FrameChoice::Parse("-5").IsOpen()) << "a frame before 0";
  EXPECT_EQ(UsageFailureOf([&] { chosen("15-"); }), "frames: no frame from 15 on exists");
  EXPECT_EQ(UsageFailureOf([] { FrameChoice::Parse("all").Among({}); }),
            "frames: no frame exists, expected some for all of them");
  EXPECT_EQ(UsageFailureOf([] { ParseFrames("1,5-"); }),
            "frames: expected frames that do not depend on files, such as 7, 1-48, 1-48x2 or 1,3,5-9, found \"1,5-\"");
}

TEST(FrameRangeTextLists, RefuseNonsense) {
  for (const std::string text :
       {"", ",", "1,", ",1", "1,,2", "a", "all,x", "allx2", "1-5-", "x2", "-", "1 ,2", "1;2", "1-x"}) {
    EXPECT_EQ(UsageFailureOf([&] { FrameChoice::Parse(text); }),
              "frames: expected frames such as 7, 1-48, 1-48x2, 1,3,5-9, 10- or all, found \"" + text + "\"");
  }
  EXPECT_EQ(UsageFailureOf([&] { FrameChoice::Parse("1,5-4"); }),
            "frames: expected a last frame that is not before the first, found \"1,5-4\"");
  EXPECT_EQ(UsageFailureOf([&] { FrameChoice::Parse("1-x0"); }),
            "frames: expected a step of at least 1, found \"1-x0\"");
}

TEST(FrameRangeTextLists, RandomListsComeBack) {
  std::mt19937 random(5);
  for (int i = 0; i < 500; ++i) {
    Frames frames;
    std::set<std::int32_t> seen;
    for (std::size_t count = 1 + random() % 30; count > 0; --count) {
      const auto frame = static_cast<std::int32_t>(random() % 60) - 20;
      if (seen.insert(frame).second) frames.push_back(frame);
    }
    const FrameList list = FrameList::Of(frames);
    EXPECT_EQ(All(list), frames);
    EXPECT_EQ(All(ParseFrames(FormatFrames(list))), frames);
    EXPECT_EQ(list.First(), *seen.begin());
    EXPECT_EQ(list.Last(), *seen.rbegin());
    for (std::int32_t frame = -25; frame < 45; ++frame)
      EXPECT_EQ(list.Contains(frame), seen.contains(frame));
  }
}

}  // namespace
}  // namespace vblur::host
