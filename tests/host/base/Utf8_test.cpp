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

TEST(Utf8, BecomesUtf16AndBack) {
  for (const std::u16string text : {u"", u"a", u"\u0080\u07FF", u"\u0800\uFFFF", u"\U00010000\U0010FFFF"})
    EXPECT_EQ(Utf16Of(Utf8Of(text)), text);
}

TEST(Utf8, ReplacesWhatIsNone) {
  EXPECT_EQ(Utf16Of("a\xFFz"), u"a\uFFFDz");
  EXPECT_EQ(Utf16Of("\xC3"), u"\uFFFD");
  EXPECT_EQ(Utf16Of("\xC0\x80"), u"\uFFFD\uFFFD");
  EXPECT_EQ(Utf16Of("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(Utf16Of("\xF4\x90\x80\x80"), u"\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(Utf8, NamesFilesOfAnyCharacters) {
  const std::string name = "\xC3\xA9\xE6\x97\xA5\xF0\x9F\x98\x80.png";
  EXPECT_EQ(Utf8Of(PathOf(name)), name);
  EXPECT_EQ(Utf8Of(PathOf("folder/" + name).filename()), name);
  EXPECT_EQ(PathOf(name), std::filesystem::path(std::u16string(u"\u00E9\u65E5\U0001F600.png")));
}

}  // namespace
}  // namespace vblur::host
