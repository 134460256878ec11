#include "host/formats/PngHead.h"

#include <gtest/gtest.h>

#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

using namespace std::string_literals;

const std::string kBegin = "\x89PNG\r\n\x1a\n"s + PngChunk("IHDR", std::string(13, '\1'));

TEST(PngHead, AChunkHasItsLengthAndItsSum) {
  EXPECT_EQ(PngChunk("IEND", ""), "\0\0\0\0IEND\xae\x42\x60\x82"s);
}

TEST(PngHead, ChunksComeBehindTheHeaderInPlaceOfTheWritersOwn) {
  const std::string profile = PngChunk("pHYs", "123456789");
  const std::string pixels = PngChunk("IDAT", "pixels") + PngChunk("IEND", "");
  const std::string head = kBegin + PngChunk("sRGB", "\0"s) + profile + PngChunk("gAMA", "1234") + pixels;
  const std::string text = PngChunk("tEXt", "Title\0of it"s);
  EXPECT_EQ(WithPngChunks(head, text), kBegin + text + profile + pixels);
}

TEST(PngHead, AResolutionTakesThePlaceOfTheWritersOwn) {
  const std::string pixels = PngChunk("IDAT", "pixels") + PngChunk("IEND", "");
  const std::string scale = PngChunk("pHYs", "987654321");
  EXPECT_EQ(WithPngChunks(kBegin + PngChunk("pHYs", "123456789") + pixels, scale), kBegin + scale + pixels);
}

TEST(PngHead, DamagedChunksAreFound) {
  const ScratchFolder folder;
  const std::string end = PngChunk("IEND", "");
  std::string pixels = PngChunk("IDAT", std::string(3 << 20, 'p'));
  EXPECT_TRUE(IsIntactPngChunk(pixels));
  EXPECT_EQ(DamagedPngChunk(folder.Write("a.png", kBegin + pixels + end)), "");
  pixels[2 << 20] = 'q';
  EXPECT_FALSE(IsIntactPngChunk(pixels));
  EXPECT_FALSE(IsIntactPngChunk("short"));
  EXPECT_EQ(DamagedPngChunk(folder.Write("a.png", kBegin + pixels + end)), "IDAT");
  // Readers pass over others than those of the pixels.
  std::string text = PngChunk("tEXt", "a text");
  std::string clear = PngChunk("tRNS", "ab");
  for (std::string* chunk : {&text, &clear})
    chunk->back() = static_cast<char>(chunk->back() ^ 1);
  EXPECT_EQ(DamagedPngChunk(folder.Write("a.png", kBegin + text + end)), "");
  EXPECT_EQ(DamagedPngChunk(folder.Write("a.png", kBegin + text + clear + end)), "tRNS");
  // Cut short is something else.
  EXPECT_EQ(DamagedPngChunk(folder.Write("a.png", kBegin + pixels.substr(0, 100))), "");
}

TEST(PngHead, BytesWithoutPixelsStay) {
  EXPECT_EQ(WithPngChunks(kBegin, PngChunk("tEXt", "x")), kBegin);
  EXPECT_EQ(WithPngChunks("short", PngChunk("tEXt", "x")), "short");
}

}  // namespace
}  // namespace vblur::host
