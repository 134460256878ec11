#include "host/formats/TiffAlpha.h"

#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

std::string Number(std::uint32_t value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i)
    text += static_cast<char>(value >> (8 * i) & 0xff);
  return text;
}

std::string Entry(std::uint32_t tag, std::uint32_t type, std::uint32_t count, std::uint32_t value) {
  return Number(tag, 2) + Number(type, 2) + Number(count, 4) + Number(value, 4);
}

// A file of two tags, the second of which is given.
std::string File(const std::string& second) {
  return std::string("II*\0", 4) + Number(10, 4) + "--" + Number(2, 2) + Entry(256, 3, 1, 7) + second + Number(0, 4);
}

std::string ContentOf(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(TiffAlpha, IsSetInPlace) {
  const ScratchFolder folder;
  const auto file = folder.Write("a.tif", File(Entry(338, 3, 1, 2)));
  EXPECT_TRUE(SetTiffAlphaMeaning(file, TiffAlpha::Premultiplied));
  EXPECT_EQ(ContentOf(file), File(Entry(338, 3, 1, 1)));
  EXPECT_TRUE(SetTiffAlphaMeaning(file, TiffAlpha::Straight));
  EXPECT_EQ(ContentOf(file), File(Entry(338, 3, 1, 2)));
}

TEST(TiffAlpha, LeavesOtherFilesAlone) {
  const ScratchFolder folder;
  for (const std::string& content : {File(Entry(258, 3, 1, 8)), File(Entry(338, 3, 2, 40)), File(Entry(338, 4, 1, 2)),
                                     std::string("MM\0*", 4), std::string("II*\0\xff\xff\xff\x7f", 8), std::string()}) {
    const auto file = folder.Write("b.tif", content);
    EXPECT_FALSE(SetTiffAlphaMeaning(file, TiffAlpha::Premultiplied));
    EXPECT_EQ(ContentOf(file), content);
  }
  EXPECT_FALSE(SetTiffAlphaMeaning(folder.path() / "none.tif", TiffAlpha::Premultiplied));
}

}  // namespace
}  // namespace vblur::host
