#include "host/base/NameMatch.h"

#include <array>

#include <gtest/gtest.h>

namespace vblur::host {
namespace {

constexpr std::array<std::string_view, 4> kNames{"Blur", "Blend", "Effect Gain", "Source Gain"};

TEST(NameMatch, CaseDoesNotMatter) {
  EXPECT_TRUE(EqualIgnoringCase("Effect GAIN", "effect gain"));
  EXPECT_FALSE(EqualIgnoringCase("Blur", "Blu"));
  EXPECT_FALSE(EqualIgnoringCase("[", "{"));
}

TEST(NameMatch, FindsTheNameBehindASlip) {
  EXPECT_EQ(NearestName("Blurr", kNames), "Blur");
  EXPECT_EQ(NearestName("blru", kNames), "Blur");
  EXPECT_EQ(NearestName("lend", kNames), "Blend");
  // Two swapped letters count once.
  EXPECT_EQ(NearestName("vu", std::array<std::string_view, 1>{"UV"}), "UV");
  EXPECT_EQ(NearestName("sorce-gain", kNames), "Source Gain");
}

TEST(NameMatch, DoesNotGuessWhenNothingIsNear) {
  EXPECT_EQ(NearestName("Zoom", kNames), "");
  EXPECT_EQ(NearestName("", kNames), "");
  EXPECT_EQ(NearestName(std::string(100000, 'B'), kNames), "");
  EXPECT_EQ(UnknownName("property", "Zoom", kNames), "unknown property \"Zoom\"");
}

TEST(NameMatch, AsksForTheNearestName) {
  EXPECT_EQ(UnknownName("property", "Blurr", kNames), "unknown property \"Blurr\"; did you mean \"Blur\"?");
}

TEST(NameMatch, QuotesOnOneLine) {
  EXPECT_EQ(Quoted("a\nb\x1b[31m"), "\"a\\nb\\u001b[31m\"");
  EXPECT_EQ(Quoted(R"(C:\new\"a".png\)"), R"("C:\new\\"a\".png\")") << "folders as they are typed";
  EXPECT_EQ(Quoted("\xff"), "\"\xef\xbf\xbd\"");
  EXPECT_EQ(Quoted(std::string(100, 'x')), "\"" + std::string(60, 'x') + "...\"");
}

}  // namespace
}  // namespace vblur::host
