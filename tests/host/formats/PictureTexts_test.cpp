#include "host/formats/PictureTexts.h"

#include <gtest/gtest.h>

#include "host/formats/FileBytes.h"

namespace vblur::host {
namespace {

using namespace std::string_literals;

PictureTexts TextsOfChunks(std::string_view chunks) {
  PictureTexts texts;
  while (!chunks.empty()) {
    const auto length = static_cast<std::size_t>(Big32(chunks, 0));
    const auto text = PngTextOf(chunks.substr(4, 4), chunks.substr(8, length));
    if (text) texts[text->tag] = text->text;
    chunks.remove_prefix(length + 12);
  }
  return texts;
}

TEST(PictureTexts, ComeBackFromChunks) {
  const PictureTexts texts{
      {270, "A fox"}, {305, "p"}, {306, "2020:01:02 03:04:05"}, {315, "J\u00f6rg \u20ac"}, {33432, "(c)"}};
  const std::string chunks = PngChunksOf(texts);
  EXPECT_EQ(TextsOfChunks(chunks), texts);
  EXPECT_NE(chunks.find("tIME\x07\xe4\x01\x02\x03\x04\x05"), std::string::npos);
  // A date of another form is a text.
  const PictureTexts other{{306, "yesterday"}};
  EXPECT_EQ(TextsOfChunks(PngChunksOf(other)), other);
}

TEST(PictureTexts, OfEveryKindOfChunk) {
  const auto text = [](std::string_view name, const std::string& data) {
    const auto found = PngTextOf(name, data);
    return found ? found->name + "=" + found->text : "none";
  };
  EXPECT_EQ(text("tEXt", "Author\0J\xf6rg"s), "Artist=J\u00f6rg");
  EXPECT_EQ(text("tEXt", "Title\0"s), "DocumentName=");
  EXPECT_EQ(text("iTXt", "Comment\0\0\0de\0Bemerkung\0\xc3\xb6"s), "Comment=\u00f6");
  // Of zlib: "aaa".
  const std::string packed = "\x78\x9c\x4b\x4c\x4c\x04\x00\x02\x49\x01\x24"s;
  EXPECT_EQ(text("zTXt", "Comment\0\0"s + packed), "Comment=aaa");
  EXPECT_EQ(text("iTXt", "Comment\0\x01\0\0\0"s + packed), "Comment=aaa");
  for (const auto& [name, data] : {std::pair{"tEXt", "Author"s},
                                   {"zTXt", "Author\0"s},
                                   {"zTXt", "Author\0\0xyz"s},
                                   {"iTXt", "Author\0\0\0"s},
                                   {"tIME", "\x07\xe4"s},
                                   {"gAMA", "Author\0me"s}})
    EXPECT_EQ(text(name, data), "none") << name;
}

TEST(PictureTexts, ThatAreNoUtf8AreLatin1) {
  EXPECT_EQ(TextAsUtf8("J\xf6rg"), "J\u00f6rg");
  EXPECT_EQ(TextAsUtf8("J\u00f6rg"), "J\u00f6rg");
}

}  // namespace
}  // namespace vblur::host
