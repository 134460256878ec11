#include "host/jobs/FramePattern.h"

#include <cstdio>
#include <limits>

#include <gtest/gtest.h>

#include "host/base/SystemFiles.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

TEST(FramePattern, PadsLikePrintf) {
  for (const std::int32_t frame :
       {0, 5, -5, 99999, -99999, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}) {
    char expected[64];
    std::snprintf(expected, sizeof expected, "shot.%04d.exr", frame);
    EXPECT_EQ(FramePattern("shot.%04d.exr").FileName(frame), expected);
    EXPECT_EQ(FramePattern("shot.####.exr").FileName(frame), expected);
    EXPECT_EQ(FramePattern("shot.@@@@.exr").FileName(frame), expected);
    std::snprintf(expected, sizeof expected, "%d", frame);
    EXPECT_EQ(FramePattern("%d").FileName(frame), expected);
    for (const std::string mark : {"%d", "%01d", "#", "@"}) {
      EXPECT_EQ(FramePattern("a." + mark + ".b").FileName(frame), "a." + std::string(expected) + ".b");
      EXPECT_EQ(FramePattern("a_" + mark + ".b").FileName(frame), "a_" + std::string(expected) + ".b");
    }
    std::snprintf(expected, sizeof expected, "a/%012d/b", frame);
    EXPECT_EQ(FramePattern("a/%012d/b").FileName(frame), expected);
  }
}

TEST(FramePattern, StandsForOnePictureWithoutANumber) {
  for (const char* name :
       {"photo.png", "photo #3.png", "icon@2x.png", "#.png", "a.#b.png", "me@home", "", "50%%.png"}) {
    EXPECT_FALSE(FramePattern(name).HasNumber()) << name;
    EXPECT_EQ(FramePattern(name).FileName(7), FramePattern(name).FileName(8));
  }
  EXPECT_EQ(FramePattern("photo #3.png").FileName(1), "photo #3.png");
  EXPECT_EQ(FramePattern("50%%.%#%#.%03d").FileName(1), "50%.##.001");
  EXPECT_EQ(FramePattern("%@%@.a.%#.%03d").FileName(1), "@@.a.#.001");
  EXPECT_EQ(FramePattern("x%d").Text(), "x%d");
}

TEST(FramePattern, EscapedNamesAreLiteral) {
  for (const std::string name : {"100%.png", "a####b.png", "%04d", "##", "#", "%#", "%%", "a#b##", "plain.exr",
                                 "a.#.png", "a_@.b", "@@", "@#", "%@.", ".%#.", "_##_@.", "a@b"}) {
    const FramePattern pattern(FramePattern::Escaped(name));
    EXPECT_FALSE(pattern.HasNumber()) << name;
    EXPECT_EQ(pattern.FileName(12), name);
  }
}

TEST(FramePattern, OtherPercentSignsAreJustThat) {
  for (const std::string name :
       {"50%.png", "100%_done.png", "100%", "%", "%s.png", "%4d.png", "%0d", "%00d", "%04", "%-4d", "50% of.png"}) {
    EXPECT_FALSE(FramePattern(name).HasNumber()) << name;
    EXPECT_EQ(FramePattern(name).FileName(12), name);
  }
  EXPECT_EQ(FramePattern("50%.%04d.png").FileName(7), "50%.0007.png");
  EXPECT_EQ(FramePattern("50%d.png").FileName(7), "507.png");
}

TEST(FramePattern, AdvisesOnNumbersWithoutAZero) {
  EXPECT_EQ(FramePattern::Advice("plate.%4d.exr"), "; %4d is no frame number, expected %04d");
  EXPECT_EQ(FramePattern::Advice("50%.%12d"), "; %12d is no frame number, expected %012d");
  for (const char* name : {"plate.0001.exr", "50%.png", "%", "%4", "%4x.png", "%04d.png", "%d.png"})
    EXPECT_EQ(FramePattern::Advice(name), "") << name;
}

TEST(FramePattern, TellsTheFrameOfAFileName) {
  EXPECT_EQ(FramePattern("a/b.%04d.exr").FrameOf("a/b.0007.exr"), 7);
  EXPECT_EQ(FramePattern("a/b.%04d.exr").FrameOf("a/b.-003.exr"), -3);
  EXPECT_EQ(FramePattern("%d").FrameOf("12345"), 12345);
  for (const std::string other :
       {"a/b.7.exr", "a/b.00007.exr", "a/b..exr", "a/b.x007.exr", "b.0007.exr", "a/b.0007.ex", "a/b.0007.exr2", ""}) {
    EXPECT_EQ(FramePattern("a/b.%04d.exr").FrameOf(other), std::nullopt) << other;
  }
}

TEST(FramePattern, RefusesSecondAndWideNumbers) {
  const auto failure = [](const std::string& pattern) { return UsageFailureOf([&] { FramePattern{pattern}; }); };
  for (const std::string pattern : {"%d.%d", "####.%04d", "##a##"}) {
    EXPECT_EQ(failure(pattern), "\"" + pattern + "\": expected one frame number, found two");
  }
  for (const std::string& pattern : {std::string(33, '#'), std::string("%033d"), std::string("%099999999999d")})
    EXPECT_NE(failure(pattern).find("at most 32 digits"), std::string::npos) << pattern;
}

TEST(FramePattern, RefusesNamesThatNoFileHas) {
  const auto failure = [](const std::string& pattern) { return UsageFailureOf([&] { FramePattern{pattern}; }); };
  EXPECT_EQ(failure(std::string("o\0.png", 6)), "\"o\\u0000.png\": a file name holds no NUL character");
  EXPECT_NO_THROW(FramePattern(std::string(255, 'a') + "/" + std::string(251, 'b') + "%04d"));
  const std::string unit(kNameLimits.unit);
  EXPECT_NE(failure(std::string(256, 'a')).find(": a name of more than 255 " + unit + ", which no file can have"),
            std::string::npos);
  EXPECT_NE(failure("x/" + std::string(252, 'b') + "%04d/y").find(": a name of more than 255 " + unit),
            std::string::npos);
  std::string deep;
  while (deep.size() <= kNameLimits.mostOfPath)
    deep += "folder/";
  EXPECT_NE(failure(deep).find(": a path of more than " + std::to_string(kNameLimits.mostOfPath) + " " + unit),
            std::string::npos);
}

// The same name has more bytes than characters.
TEST(FramePattern, CountsNamesAsTheSystemDoes) {
  std::string name;
  for (int i = 0; i < 200; ++i)
    name += "\xC3\xA4";
  if (kNameLimits.unit == "bytes") {
    EXPECT_NE(UsageFailureOf([&] { FramePattern{name}; }).find("more than 255 bytes"), std::string::npos);
  } else {
    EXPECT_NO_THROW(FramePattern{name});
  }
}

TEST(FramePattern, FindsTheFramesThatExist) {
  const ScratchFolder scratch;
  for (const char* name : {"s.0003.png", "s.0001.png", "s.0012.png", "s.-005.png", "s.12345.png", "s.7.png",
                           "s.00013.png", "s.0x14.png", "s.0015.png.bak", "t.0016.png", "s..png", "s.99999999999.png",
                           "deep/0004/a.png", "deep/0002/a.png", "deep/0003/b.png"}) {
    scratch.Write(name, "x");
  }
  std::filesystem::create_directory(scratch.path() / "s.0020.png");
  const auto frames = [&](const std::string& pattern) { return FramePattern(pattern).FramesOnDisk(scratch.path()); };
  using Frames = std::vector<std::int32_t>;
  for (const char* pattern : {"s.%04d.png", "s.####.png", "s.@@@@.png"}) {
    EXPECT_EQ(frames(pattern), (Frames{-5, 1, 3, 12, 12345}));
  }
  EXPECT_EQ(frames("s.%d.png"), (Frames{7, 12345}));
  EXPECT_EQ(frames("deep/####/a.png"), (Frames{2, 4}));
  EXPECT_EQ(frames((scratch.path() / "t.%04d.png").string()), (Frames{16}));
  EXPECT_EQ(frames("none.%04d.png"), Frames{});
  EXPECT_EQ(frames("none/%04d.png"), Frames{});
}

}  // namespace
}  // namespace vblur::host
