#include "host/pictures/PictureFileHeader.h"

#include <gtest/gtest.h>

#include "host/files/PictureInfo.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

class PictureFileHeader : public testing::Test {
 protected:
  ScratchFolder folder_;
};

// Their readers decode as they open: the size is refused before.
TEST_F(PictureFileHeader, BombsAreMetByTheirHeaders) {
  using namespace std::string_literals;
  const auto expect = [&](const std::string& name, const std::string& bytes, const std::string& size) {
    const auto path = folder_.Write(name, bytes);
    EXPECT_EQ(CaughtFailure([&] { ReadPictureInfo(path); })->what(),
              path.string() + ": cannot read: " + size + " in all, expected at most 1000000000");
  };
  expect("b.gif", "GIF89a\xff\xff\xff\xff\x80\0\0"s + std::string(20, '\0'), "65535 x 65535 pixels, 4294836225");
  // Its reader takes any version for one that it knows.
  expect("c.gif", "GIF???\xff\xff\xff\xff\x80\0\0"s + std::string(20, '\0'), "65535 x 65535 pixels, 4294836225");
  const std::string siz = "\xff\x4f\xff\x51\0\x2f\0\0\0\x01\0\0\0\0\x80\0"s + std::string(40, '\0');
  expect("b.j2c", siz, "65536 x 32768 pixels, 2147483648");
  expect("b.jp2", "\0\0\0\x0cjP  \r\n\x87\n"s + siz, "65536 x 32768 pixels, 2147483648");
  expect("b.heic",
         "\0\0\0\x18"
         "ftypheic\0\0\0\0"s +
             "\0\0\0\x14ispe\0\0\0\0\0\x01\0\0\0\0\x80\0"s + std::string(40, '\0'),
         "65536 x 32768 pixels, 2147483648");
}

TEST_F(PictureFileHeader, FramesOfAnAnimatedWebpAreCounted) {
  using namespace std::string_literals;
  const std::string frame = "ANMF\x03\0\0\0abc\0"s;
  EXPECT_EQ(CountFrames(folder_.Write("a.webp", "RIFF\0\0\0\0WEBPVP8X\x02\0\0\0ab"s + frame + frame)), 2);
  EXPECT_EQ(CountFrames(folder_.Write("b.webp", "RIFF\0\0\0\0WEBPVP8L\x02\0\0\0ab"s)), 1);
}

// The picture that readers without animation show is a frame, or one more.
TEST_F(PictureFileHeader, FramesOfAnAnimatedPngAreCounted) {
  using namespace std::string_literals;
  const auto count = [&](const std::string& chunks) {
    return CountFrames(folder_.Write("a.png", "\x89PNG\r\n\x1a\n"s + chunks + "\0\0\0\x01IDATx"s + "crc!"));
  };
  const std::string header = "\0\0\0\x02IHDRabcrc!"s;
  const std::string animation =
      "\0\0\0\x08"
      "acTL\0\0\0\x03\0\0\0\0crc!"s;
  const std::string frame =
      "\0\0\0\x04"
      "fcTLabcdcrc!"s;
  EXPECT_EQ(count(header), 1);
  EXPECT_EQ(count(header + animation + frame), 3);
  EXPECT_EQ(count(header + animation), 4);
  EXPECT_EQ(count(animation.substr(0, 9)), 1);
}

}  // namespace
}  // namespace vblur::host
