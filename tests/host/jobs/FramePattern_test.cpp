#include "host/jobs/FramePattern.h"

#include <cstdio>
#include <limits>

#include <gtest/gtest.h>

#include "tests/support/host/FailureOf.h"

namespace vblur::host {
namespace {

TEST(FramePattern, PadsLikePrintf) {
  for (const std::int32_t frame :
       {0, 5, -5, 99999, -99999, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}) {
    char expected[64];
    std::snprintf(expected, sizeof expected, "shot.%04d.exr", frame);
    EXPECT_EQ(FramePattern("shot.%04d.exr").FileName(frame), expected);
    EXPECT_EQ(FramePattern("shot.####.exr").FileName(frame), expected);
    std::snprintf(expected, sizeof expected, "%d", frame);
    EXPECT_EQ(FramePattern("%d").FileName(frame), expected);
    std::snprintf(expected, sizeof expected, "a/%012d/b", frame);
    EXPECT_EQ(FramePattern("a/%012d/b").FileName(frame), expected);
  }
}

TEST(FramePattern, StandsForOnePictureWithoutANumber) {
  for (const char* name : {"photo.png", "photo #3.png", "", "50%%.png"}) {
    EXPECT_FALSE(FramePattern(name).HasNumber()) << name;
    EXPECT_EQ(FramePattern(name).FileName(7), FramePattern(name).FileName(8));
  }
  EXPECT_EQ(FramePattern("photo #3.png").FileName(1), "photo #3.png");
  EXPECT_EQ(FramePattern("50%%.%#%#.%03d").FileName(1), "50%.##.001");
  EXPECT_EQ(FramePattern("x%d").Text(), "x%d");
}

TEST(FramePattern, EscapedNamesAreLiteral) {
  for (const std::string name : {"100%.png", "a####b.png", "%04d", "##", "#", "%#", "%%", "a#b##", "plain.exr"}) {
    const FramePattern pattern(FramePattern::Escaped(name));
    EXPECT_FALSE(pattern.HasNumber()) << name;
    EXPECT_EQ(pattern.FileName(12), name);
  }
}

TEST(FramePattern, RefusesOtherPercentSignsAndSecondNumbers) {
  const auto failure = [](const std::string& pattern) { return UsageFailureOf([&] { FramePattern{pattern}; }); };
  for (const std::string pattern :
       {"%s.png", "100%", "%4d.png", "%0d", "%00d", "%04", "%-4d", "%033d", "%099999999999d"}) {
    EXPECT_EQ(failure(pattern),
              "\"" + pattern + "\": expected %d, %04d or the like behind a %, or %% for a percent sign");
  }
  for (const std::string pattern : {"%d.%d", "####.%04d", "##a##"}) {
    EXPECT_EQ(failure(pattern), "\"" + pattern + "\": expected one frame number, found two");
  }
  EXPECT_NE(failure(std::string(33, '#')).find("at most 32 digits"), std::string::npos);
}

}  // namespace
}  // namespace vblur::host
