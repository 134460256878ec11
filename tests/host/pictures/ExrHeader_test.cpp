#include "host/formats/ExrHeader.h"

#include <array>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/host/RawPictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

using namespace std::string_literals;

std::string Number(std::int32_t value) {
  std::string bytes;
  for (int i = 0; i < 4; ++i)
    bytes += static_cast<char>(value >> (8 * i));
  return bytes;
}

std::string Attribute(const std::string& type, const std::string& value, std::int32_t more = 0) {
  return "name\0"s + type + '\0' + Number(static_cast<std::int32_t>(value.size()) + more) + value;
}

// A header of these attributes, and a hundred bytes behind it.
bool IsSound(const std::string& attributes) {
  const std::string bytes = "\x76\x2f\x31\x01\x02\0\0\0"s + attributes + '\0' + std::string(100, 'x');
  std::istringstream file(bytes);
  return IsSoundExrHeader(file, static_cast<std::int64_t>(bytes.size()));
}

TEST(ExrHeader, HoldsAttributesOfAllLengths) {
  const std::string channel = "R\0"s + std::string(16, '\1');
  EXPECT_TRUE(IsSound(""));
  EXPECT_TRUE(IsSound(Attribute("chlist", channel + channel + '\0') + Attribute("box2i", std::string(16, '\1'))));
  EXPECT_TRUE(IsSound(Attribute("string", "") + Attribute("string", "text") + Attribute("of ours", "anything")));
  EXPECT_TRUE(IsSound(Attribute("stringvector", Number(2) + "ab" + Number(0))));
  EXPECT_TRUE(IsSound(Attribute("preview", Number(2) + Number(3) + std::string(24, 'p'))));
  EXPECT_TRUE(IsSound(Attribute("preview", Number(0) + Number(3))));
}

TEST(ExrHeader, RefusesTilesFarLargerThanThePicture) {
  const auto named = [](const std::string& name, const std::string& type, const std::string& value) {
    return name + '\0' + type + '\0' + Number(static_cast<std::int32_t>(value.size())) + value;
  };
  const auto tiled = [&](std::int32_t width, std::int32_t height, std::int32_t side) {
    return IsSound(named("tiles", "tiledesc", Number(width) + Number(height) + '\0') +
                   named("dataWindow", "box2i", Number(-1) + Number(-1) + Number(side - 2) + Number(side - 2)));
  };
  EXPECT_TRUE(tiled(1024, 1024, 1));
  EXPECT_FALSE(tiled(1024, 1025, 1));
  EXPECT_TRUE(tiled(4096, 4096, 2048));
  EXPECT_FALSE(tiled(4096, 4097, 2048));
  EXPECT_FALSE(tiled(2, 20807680, 5));
  EXPECT_FALSE(tiled(-1024, 1024, 5));
  // Others of these names or types say nothing of it.
  EXPECT_TRUE(IsSound(named("tiles", "box2i", Number(4096) + Number(4096) + Number(1) + Number(1))));
  EXPECT_TRUE(IsSound(named("other", "tiledesc", Number(4096) + Number(4096) + '\0')));
}

// The library reads these by their type and takes what follows for the next attribute, or takes memory for them.
TEST(ExrHeader, RefusesLengthsThatAreNotThoseOfTheType) {
  const std::string channel = "R\0"s + std::string(16, '\1');
  EXPECT_FALSE(IsSound(Attribute("box2i", std::string(16, '\1'), 1)));
  EXPECT_FALSE(IsSound(Attribute("float", "1234", -1)));
  EXPECT_FALSE(IsSound(Attribute("chlist", channel)));
  EXPECT_FALSE(IsSound(Attribute("chlist", channel + '\0' + "more")));
  EXPECT_FALSE(IsSound(Attribute("stringvector", Number(0x7fffffff) + "ab")));
  EXPECT_FALSE(IsSound(Attribute("stringvector", Number(-1) + "ab")));
  EXPECT_FALSE(IsSound(Attribute("preview", Number(0x7fffffff) + Number(0x7fffffff) + "abcd")));
  EXPECT_FALSE(IsSound(Attribute("preview", Number(1) + Number(1))));
  EXPECT_FALSE(IsSound(Attribute("of ours", "", 0x7fffffff)));
  EXPECT_FALSE(IsSound(Attribute("of ours", "", -1)));
  EXPECT_FALSE(IsSound(std::string(300, 'n')));
  EXPECT_FALSE(IsSound("name"));
}

TEST(ExrHeader, IsThatOfEveryFileThatTheLibraryWrites) {
  const ScratchFolder folder;
  OIIO::ImageSpec spec(5, 2, 3, OIIO::TypeDesc::HALF);
  spec.attribute("texts", OIIO::TypeDesc(OIIO::TypeDesc::STRING, 2), std::array{"one", "two"}.data());
  spec.attribute("matrix", OIIO::TypeMatrix, std::array<float, 16>{}.data());
  spec.attribute("smpte:TimeCode", OIIO::TypeTimeCode, std::array<int, 2>{1, 2}.data());
  spec.tile_width = spec.tile_height = 16;
  WriteRaw(folder.path() / "tiles.exr", "openexr", spec, std::vector<float>(30));
  std::ifstream file(folder.path() / "tiles.exr", std::ios::binary);
  EXPECT_TRUE(
      IsSoundExrHeader(file, static_cast<std::int64_t>(std::filesystem::file_size(folder.path() / "tiles.exr"))));
}

}  // namespace
}  // namespace vblur::host
