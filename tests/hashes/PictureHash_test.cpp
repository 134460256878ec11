#include "tests/hashes/PictureHash.h"

#include <gtest/gtest.h>

namespace vblur::hashes {
namespace {

using differential::DrawnPicture;

TEST(PictureHash, OfNothingIsTheStart) {
  EXPECT_EQ(HashPicture({0, 0, 4, {}}, 8), 0xcbf29ce484222325u);
}

// The published hash of the text "foobar".
TEST(PictureHash, OfBytesIsThatOfTheirText) {
  EXPECT_EQ(HashPicture({6, 1, 1, {'f', 'o', 'o', 'b', 'a', 'r'}}, 8), 0x85944171f73967e8u);
}

TEST(PictureHash, GoesFromTheTopDown) {
  EXPECT_EQ(HashPicture({3, 2, 1, {'b', 'a', 'r', 'f', 'o', 'o'}}, 8), 0x85944171f73967e8u);
}

TEST(PictureHash, TakesTheLowByteFirst) {
  EXPECT_EQ(HashPicture({3, 1, 1, {'f' + ('o' << 8), 'o' + ('b' << 8), 'a' + ('r' << 8)}}, 16), 0x85944171f73967e8u);
}

TEST(PictureHash, TakesAllBytesOfFloats) {
  const auto word = [](std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t d) {
    return static_cast<std::int32_t>(a | b << 8 | c << 16 | d << 24);
  };
  EXPECT_EQ(HashPicture({1, 1, 1, {word(0x66, 0x6f, 0x6f, 0x62)}}, 32),
            HashPicture({4, 1, 1, {0x66, 0x6f, 0x6f, 0x62}}, 8));
}

TEST(PictureHash, TellsNegativeValuesApart) {
  EXPECT_NE(HashPicture({1, 1, 4, {0, 0, 0, -1}}, 16), HashPicture({1, 1, 4, {0, 0, 0, 255}}, 16));
}

TEST(PictureHash, IsALineWithSizeAndFormat) {
  EXPECT_EQ(HashLine("golden/tiny", {1, 2, 4, {1, 2, 3, 4, 250, 251, 252, 253}}, 8),
            "golden/tiny 1x2 R8 3c2cc0a9365a409d");
}

}  // namespace
}  // namespace vblur::hashes
