// The formats that the Windows Imaging Component writes.
#include "host/files/OutputFormat.h"

#include <gtest/gtest.h>

#include "tests/support/host/FailureOf.h"

namespace vblur::host {
namespace {

using enum SampleType;
using enum PixelLayout;

TEST(OutputFormat, ATypeThatIsNotThereBecomesTheNearest) {
  const auto nearest = [](const char* file, SampleType wanted) { return NearestType(OutputFormatOf(file), wanted); };
  EXPECT_EQ(nearest("a.png", Unsigned8), Unsigned8);
  EXPECT_EQ(nearest("a.png", Unsigned10), Unsigned16);
  EXPECT_EQ(nearest("a.tif", Half), Unsigned16);
  EXPECT_EQ(nearest("a.tif", Float), Unsigned16);
  EXPECT_EQ(nearest("a.jpg", Float), Unsigned8);
  EXPECT_EQ(nearest("a.bmp", Unsigned16), Unsigned8);
}

TEST(OutputFormat, ALayoutThatIsNotThereBecomesTheNearest) {
  const auto nearest = [](const char* file, bool isGrey, bool hasAlpha) {
    return NearestLayout(OutputFormatOf(file), isGrey, hasAlpha);
  };
  EXPECT_EQ(nearest("a.png", true, false), Grey);
  EXPECT_EQ(nearest("a.png", true, true), Rgba);
  EXPECT_EQ(nearest("a.jpg", true, true), Grey);
  EXPECT_EQ(nearest("a.bmp", false, true), Rgb);
}

TEST(OutputFormat, WhatAFormatDoesNotHaveIsRefused) {
  const auto refusal = [](const char* file, const OutputStorage& storage) {
    return UsageFailureOf([&] { CheckStorage(file, storage); });
  };
  EXPECT_EQ(refusal("a.png", {Half, {}, {}}),
            "output: a.png: this format has no type half, expected one of uint8 uint16");
  EXPECT_EQ(refusal("a.tif", {{}, "piz", {}}),
            "output: a.tif: this format has no compression \"piz\", expected one of none lzw zip");
  EXPECT_EQ(refusal("a.bmp", {{}, "rle", {}}),
            "output: a.bmp: this format has no compression \"rle\", expected none to be given");
  EXPECT_EQ(refusal("a.png", {{}, {}, 90}), "output: a.png: this format has no quality 90, expected none to be given");
  EXPECT_EQ(refusal("a.jpg", {{}, {}, 101}), "output: a.jpg: expected a quality from 1 to 100, found 101");
  CheckStorage("a.tif", {Unsigned16, "LZW", {}});
  CheckStorage("a.jpg", {Unsigned8, {}, 1});
}

TEST(OutputFormat, AnInputOfAnotherSystemsFormatsIsLikePng) {
  EXPECT_EQ(ExtensionLike("openexr"), "png");
  EXPECT_EQ(ExtensionLike("tiff"), "tif");
}

}  // namespace
}  // namespace vblur::host
