#include "host/files/OutputFormat.h"

#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "host/files/PictureReport.h"
#include "tests/support/host/FailureOf.h"

namespace vblur::host {
namespace {

using enum SampleType;
using enum PixelLayout;

SampleType Nearest(const char* file, SampleType wanted) {
  return NearestType(OutputFormatOf(file), wanted);
}

TEST(OutputFormat, ATypeThatIsNotThereBecomesTheNearest) {
  EXPECT_EQ(Nearest("a.png", Unsigned8), Unsigned8);
  EXPECT_EQ(Nearest("a.png", Unsigned10), Unsigned16);
  EXPECT_EQ(Nearest("a.png", Half), Unsigned16);
  EXPECT_EQ(Nearest("a.png", Float), Unsigned16);
  EXPECT_EQ(Nearest("a.jpg", Float), Unsigned8);
  EXPECT_EQ(Nearest("a.dpx", Unsigned10), Unsigned10);
  EXPECT_EQ(Nearest("a.dpx", Float), Unsigned16);
  EXPECT_EQ(Nearest("a.exr", Unsigned8), Half);
  EXPECT_EQ(Nearest("a.exr", Unsigned10), Half);
  EXPECT_EQ(Nearest("a.exr", Unsigned12), Float);
  EXPECT_EQ(Nearest("a.exr", Unsigned16), Float);
  EXPECT_EQ(Nearest("a.hdr", Unsigned8), Float);
}

TEST(OutputFormat, ALayoutThatIsNotThereBecomesTheNearest) {
  const auto nearest = [](const char* file, bool isGrey, bool hasAlpha) {
    return NearestLayout(OutputFormatOf(file), isGrey, hasAlpha);
  };
  EXPECT_EQ(nearest("a.png", true, true), GreyAlpha);
  EXPECT_EQ(nearest("a.jpg", true, true), Grey);
  EXPECT_EQ(nearest("a.jpg", false, true), Rgb);
  EXPECT_EQ(nearest("a.tga", true, true), Rgba);
  EXPECT_EQ(nearest("a.webp", true, false), Rgb);
  EXPECT_EQ(nearest("a.webp", true, true), Rgb);
  EXPECT_EQ(nearest("a.ppm", true, true), Rgb);
}

TEST(OutputFormat, WhatAFormatDoesNotHaveIsRefused) {
  const auto refusal = [](const char* file, const OutputStorage& storage) {
    return UsageFailureOf([&] { CheckStorage(file, storage); });
  };
  EXPECT_EQ(refusal("a.png", {Half, {}, {}}),
            "output: a.png: this format has no type half, expected one of uint8 uint16");
  EXPECT_EQ(refusal("a.tif", {{}, "piz", {}}),
            "output: a.tif: this format has no compression \"piz\", expected one of none lzw zip packbits");
  EXPECT_EQ(refusal("a.sgi", {{}, "rle", {}}),
            "output: a.sgi: this format has no compression \"rle\", expected none to be given");
  EXPECT_EQ(refusal("a.png", {{}, {}, 90}), "output: a.png: this format has no quality 90, expected none to be given");
  EXPECT_EQ(refusal("a.jpg", {{}, {}, 101}), "output: a.jpg: expected a quality from 1 to 100, found 101");
  CheckStorage("a.exr", {Float, "DWAA", {}});
  CheckStorage("a.jpg", {Unsigned8, {}, 1});
}

std::string Listed(std::string_view words) {
  std::string text(words);
  for (std::size_t at = 0; (at = text.find(' ', at)) != std::string::npos; at += 2)
    text.replace(at, 1, ", ");
  return text;
}

// Of a set's members by their names.
template <typename Enum, typename Name>
std::string Listed(const SetOf<Enum>& set, std::size_t members, Name name) {
  std::string text;
  for (std::size_t member = 0; member < members; ++member) {
    if (!set.Has(static_cast<Enum>(member))) continue;
    text += (text.empty() ? "" : ", ") + std::string(name(static_cast<Enum>(member)));
  }
  return text.empty() ? "none" : text;
}

std::string RowOf(const OutputFormat& format) {
  const auto metadata = [](MetadataGroup group) { return kMetadataNames[static_cast<std::size_t>(group)]; };
  return "| " + Listed(format.extensions) + " | " +
         Listed(format.types, kSampleTypeNames.size(), [](SampleType type) { return NameOf(type); }) + " | " +
         Listed(format.layouts, 4, [](PixelLayout layout) { return NameOf(layout); }) + " | " +
         (format.hasWindows && format.hasAnyChannels ? "kept" : "no") + " | " +
         (format.compressions.empty() ? "no" : Listed(format.compressions)) + " | " +
         (format.hasQuality ? "yes" : "no") + " | " + Listed(format.metadata, kMetadataNames.size(), metadata) + " |";
}

TEST(OutputFormat, TheDocumentListsEveryFormatAsItIs) {
  std::ifstream file(VBLUR_RELIABILITY_DOCUMENT);
  std::stringstream text;
  text << file.rdbuf();
  const std::string begins = "|---|---|---|---|---|---|---|\n";
  std::string table;
  for (const OutputFormat& format : OutputFormats())
    table += RowOf(format) + "\n";
  const std::size_t at = text.str().find(begins);
  ASSERT_NE(at, std::string::npos);
  EXPECT_EQ(text.str().substr(at + begins.size(), table.size() + 1), table + "\n");
}

}  // namespace
}  // namespace vblur::host
