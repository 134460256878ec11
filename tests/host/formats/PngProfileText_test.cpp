#include "host/formats/PngProfileText.h"

#include <gtest/gtest.h>
#include <zlib.h>

namespace vblur::host {
namespace {

using namespace std::string_literals;

const std::string& Keyword() {
  static const std::string keyword = "Raw profile type exif\0"s;
  return keyword;
}

std::string Packed(const std::string& text) {
  uLongf length = ::compressBound(static_cast<uLong>(text.size()));
  std::string packed(length, '\0');
  ::compress(reinterpret_cast<Bytef*>(packed.data()), &length, reinterpret_cast<const Bytef*>(text.data()),
             static_cast<uLong>(text.size()));
  return packed.substr(0, length);
}

std::optional<std::string> Plain(const std::string& text) {
  return ExifOfText("tEXt", Keyword() + text);
}

TEST(PngProfileText, IsKnownByItsKeyword) {
  EXPECT_TRUE(IsExifText(Keyword()));
  EXPECT_TRUE(IsExifText("raw profile type EXIF\0\n"s));
  EXPECT_EQ(Keyword().size(), kExifKeyword);
  EXPECT_FALSE(IsExifText("Raw profile type exif"));
  EXPECT_FALSE(IsExifText("Raw profile type iptc\0"s));
  EXPECT_FALSE(IsExifText(""));
}

TEST(PngProfileText, HoldsTheBytesAsDigits) {
  EXPECT_EQ(Plain("\nexif\n      10\n457869660000\n49492A0f\n"), "II*\x0f");
  EXPECT_EQ(Plain("\nexif\n6\n457869660000"), "");
  const std::string text = "\nexif\n       8\n4578696600004949\n";
  EXPECT_EQ(ExifOfText("zTXt", Keyword() + '\0' + Packed(text)), "II");
  EXPECT_EQ(ExifOfText("iTXt", Keyword() + text), std::nullopt);
}

TEST(PngProfileText, DamagedOnesHoldNothing) {
  for (const char* text : {"", "\n", "\nexif", "\nexif\n", "\nexif\n8", "\nexif\n8\n45786966000049",
                           "\nexif\n8\n457869660000494", "\nexif\n7\n4578696600004949", "\nexif\n8\n45786966000049xx",
                           "\nexif\n2\n4949", "\nexif\n99999999999999999999999\n4578696600004949"})
    EXPECT_EQ(Plain(text), std::nullopt) << text;
  const std::string packed = Keyword() + '\0' + Packed("\nexif\n8\n4578696600004949\n");
  for (std::size_t length = 0; length < packed.size(); ++length)
    EXPECT_EQ(ExifOfText("zTXt", packed.substr(0, length)), std::nullopt) << length;
  EXPECT_EQ(ExifOfText("tEXt", "no keyword"), std::nullopt);
}

// However little it is packed into.
TEST(PngProfileText, LongOnesHoldNothing) {
  const std::string zeros = "\nexif\n2000006\n457869660000" + std::string(4'000'000, '0');
  EXPECT_EQ(ExifOfText("zTXt", Keyword() + '\0' + Packed(zeros))->size(), 2'000'000u);
  const std::string more = "\nexif\n3000006\n457869660000" + std::string(6'000'000, '0');
  EXPECT_EQ(ExifOfText("zTXt", Keyword() + '\0' + Packed(more)), std::nullopt);
}

}  // namespace
}  // namespace vblur::host
