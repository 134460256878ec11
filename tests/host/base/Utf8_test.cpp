#include "host/base/Utf8.h"

#include <gtest/gtest.h>

namespace vblur::host {
namespace {

TEST(Utf8, HasOneToFourBytesForACharacter) {
  EXPECT_EQ(Utf8Of(u""), "");
  EXPECT_EQ(Utf8Of(u"Crop\x7F"), "Crop\x7F");
  EXPECT_EQ(Utf8Of(u"\u0080\u07FF"), "\xC2\x80\xDF\xBF");
  EXPECT_EQ(Utf8Of(u"\u0800\uFFFF"), "\xE0\xA0\x80\xEF\xBF\xBF");
  EXPECT_EQ(Utf8Of(u"\U00010000\U0010FFFF"), "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
}

TEST(Utf8, ReplacesHalvesOfSurrogatePairs) {
  const char16_t high = 0xD83D;
  const char16_t low = 0xDE00;
  EXPECT_EQ(Utf8Of(std::u16string{high, low}), "\xF0\x9F\x98\x80");
  EXPECT_EQ(Utf8Of(std::u16string{high}), "\xEF\xBF\xBD");
  EXPECT_EQ(Utf8Of(std::u16string{low, high, u'a'}),
            "\xEF\xBF\xBD\xEF\xBF\xBD"
            "a");
}

}  // namespace
}  // namespace vblur::host
