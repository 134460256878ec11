#include "host/formats/FileHeader.h"

#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

std::filesystem::path Known(const std::string& name) {
  return std::filesystem::path(VBLUR_PICTURES_FOLDER) / name;
}

std::string BytesOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(FileHeader, SaysWhatPixelsConsistOf) {
  struct Expected {
    const char* file;
    const char* format;
    std::int32_t channels;
    std::int32_t bits;
    bool isGrey;
    bool hasAlpha;
  };
  constexpr Expected kExpected[] = {{"grey8.png", "png", 1, 8, true, false},
                                    {"greya16.png", "png", 2, 16, true, true},
                                    {"rgba16.png", "png", 4, 16, false, true},
                                    {"rgb8-clear.png", "png", 3, 8, false, true},
                                    {"grey4.tif", "tiff", 1, 4, true, false},
                                    {"rgb16-lzw.tif", "tiff", 3, 16, false, false},
                                    {"premultiplied8.tif", "tiff", 4, 8, false, true},
                                    {"inks.jpg", "jpeg", 4, 8, false, false},
                                    {"grey.jpg", "jpeg", 1, 8, true, false},
                                    {"rgb.bmp", "bmp", 3, 8, false, false},
                                    {"rgba.bmp", "bmp", 4, 8, false, true}};
  for (const Expected& expected : kExpected) {
    const FileHeader header = ReadFileHeader(Known(expected.file));
    EXPECT_EQ(header.format, expected.format) << expected.file;
    EXPECT_EQ(header.channels, expected.channels) << expected.file;
    EXPECT_EQ(header.bits, expected.bits) << expected.file;
    EXPECT_EQ(header.isGrey, expected.isGrey) << expected.file;
    EXPECT_EQ(header.hasAlpha, expected.hasAlpha) << expected.file;
    EXPECT_TRUE(header.isWhole) << expected.file;
    EXPECT_GT(header.width * header.height, 0) << expected.file;
  }
  EXPECT_TRUE(ReadFileHeader(Known("premultiplied8.tif")).associatedAlpha);
  EXPECT_FALSE(ReadFileHeader(Known("rgba8-zip.tif")).associatedAlpha);
  EXPECT_TRUE(ReadFileHeader(Known("inks.tif")).hasInks);
  EXPECT_EQ(ReadFileHeader(Known("rgb16-lzw.tif")).compression, "lzw");
  EXPECT_EQ(ReadFileHeader(Known("tiled8.tif")).tileWidth, 16);
  EXPECT_EQ(ReadFileHeader(Known("palette.tif")).palette.size(), 16u);
}

TEST(FileHeader, AFileThatEndsInItsPixelsIsNotWhole) {
  const ScratchFolder folder;
  for (const char* name : {"rgb8.png", "rgb8-packbits.tif", "tiled8.tif", "rgb.jpg", "rgb.bmp", "palette4.bmp"}) {
    const std::string whole = BytesOf(Known(name));
    EXPECT_FALSE(ReadFileHeader(folder.Write(name, whole.substr(0, whole.size() * 2 / 3))).isWhole) << name;
  }
}

TEST(FileHeader, OtherFilesHaveNone) {
  const ScratchFolder folder;
  for (const std::string bytes : {"", "text", "II", "BM", "\xff\xd8", "\x89PNG\r\n\x1a\n"}) {
    const FileHeader header = ReadFileHeader(folder.Write("other", bytes));
    EXPECT_LE(header.width, 0) << bytes;
  }
}

}  // namespace
}  // namespace vblur::host
