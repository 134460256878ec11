// JPEG files with Exif data by the light and by the full picture library.
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/light/ExifFieldsTest.h"
#include "tests/host/light/LightPicturesTest.h"

namespace vblur::host {
namespace {

class LightJpegExif : public LightPicturesTest {
 protected:
  // Behind its head, or in its place.
  std::filesystem::path Make(const std::string& block, bool hasHead = true, int density = 0) const {
    std::string jpeg = PlainBytes();
    const std::string segment = "Exif" + std::string(2, '\0') + block;
    const std::size_t length = segment.size() + 2;
    std::string marker = "\xff\xe1";
    marker += {static_cast<char>(length >> 8), static_cast<char>(length & 0xff)};
    constexpr std::size_t kHead = 18;
    if (density > 0) {
      jpeg[11 + 2] = 1;
      jpeg[15] = jpeg[17] = static_cast<char>(density);
    }
    jpeg = jpeg.substr(0, 2) + (hasHead ? jpeg.substr(2, kHead) : "") + marker + segment + jpeg.substr(2 + kHead);
    return Write(jpeg, "in.jpg");
  }

  static std::string PlainBytes();

  using LightPicturesTest::ExpectSame;
  // To the last byte, and PNG files by the light library, too.
  void ExpectSame(const std::filesystem::path& path) const {
    LightPicturesTest::ExpectSame(path, "out.jpg");
    const auto light = Read(Light, path, 8);
    for (const char* name : {"out.jpg", "out.png"})
      EXPECT_EQ(Written(Light, *light, name), Written(Full, *light, name));
  }
};

std::string LightJpegExif::PlainBytes() {
  ScratchFolder folder;
  const auto path = folder.path() / "plain.jpg";
  HostImage image;
  image.Reset(8, 4, 37, 29);
  for (std::size_t i = 0; i < image.ByteCount(); ++i)
    image.Row(0)[i] = static_cast<std::byte>(i % 4 == 3 ? 255 : i * 7 % 251);
  UsePictures(Full);
  PictureWriter().WriteBeside(path, image, nullptr, {.overwrite = true, .sync = false}).Commit();
  std::string jpeg = BytesOf(path);
  // Its own Exif data, behind the head of 2 and 18 bytes.
  constexpr std::size_t kHead = 20;
  const std::size_t length =
      static_cast<unsigned char>(jpeg[kHead + 2]) * 256u + static_cast<unsigned char>(jpeg[kHead + 3]);
  return jpeg.erase(kHead, 2 + length);
}

TEST_F(LightJpegExif, ReadAndWriteACamerasFields) {
  for (const bool isBig : {false, true}) {
    SCOPED_TRACE(isBig ? "MM" : "II");
    ExpectSame(Make(ExifTestBlock(isBig).Build(kPicture, kCamera, kPlace)));
    ExpectSame(Make(ExifTestBlock(isBig).Build(kPicture, {}, {})));
    ExpectSame(Make(ExifTestBlock(isBig).Build({}, kCamera, {})));
    ExpectSame(Make(ExifTestBlock(isBig).Build({}, {}, kPlace)));
  }
}

TEST_F(LightJpegExif, ReadAndWriteWithoutAHead) {
  ExpectSame(Make(ExifTestBlock(false).Build(kPicture, kCamera, kPlace), false));
  ExpectSame(Make(ExifTestBlock(true).Build({}, kCamera, {}), false));
}

TEST_F(LightJpegExif, ReadAndWriteItsResolution) {
  for (const int density : {0, 72, 96}) {
    for (const std::uint64_t unit : {0, 1, 2, 3, 4}) {
      for (const std::uint64_t y : {0, 72, 300}) {
        SCOPED_TRACE(std::to_string(density) + ' ' + std::to_string(unit) + ' ' + std::to_string(y));
        Fields fields = {Text(0x010f, "A maker"), Fraction(0x011a, 72, 1)};
        if (y > 0) fields.push_back(Fraction(0x011b, y, 1));
        if (unit > 0) fields.push_back(Short(0x0128, unit));
        const auto path = Make(ExifTestBlock(false).Build(fields, {}, {}), true, density);
        if (FailureOf(Light, path).empty()) {
          ExpectSame(path);
        } else {
          EXPECT_TRUE(y == 0 && density == 0);
          ExpectLeft(path);
        }
      }
    }
  }
}

TEST_F(LightJpegExif, ReadAndWriteASmallCopy) {
  std::string block = ExifTestBlock(false).Build({Text(0x010f, "A maker"), Short(0x0112, 1)}, {}, {});
  // Where the second directory lies: behind the first.
  const std::size_t next = 8 + 2 + 2 * 12;
  block[next] = static_cast<char>(block.size());
  const std::size_t copyAt = block.size() + 2 + 2 * 12 + 4;
  block += std::string("\2\0\1\2\4\0\1\0\0\0", 10) + static_cast<char>(copyAt) + std::string(3, '\0');
  block += std::string("\2\2\4\0\1\0\0\0\6\0\0\0\0\0\0\0", 16) + "\xff\xd8" + "copy";
  ExpectSame(Make(block));
}

// Whatever the types of their values.
TEST_F(LightJpegExif, ReadFieldsOfAnyType) {
  std::mt19937 random(11);
  int read = 0;
  constexpr int kRounds = 300;
  for (int round = 0; round < kRounds; ++round) {
    const std::string block = ExifTestBlock(random() % 2 == 0)
                                  .Build(SomeOf(kPicture, random), SomeOf(kCamera, random), SomeOf(kPlace, random));
    const auto path = Make(block);
    SCOPED_TRACE(round);
    if (FailureOf(Light, path).empty()) {
      ++read;
      ExpectSameReading(path);
      const auto light = Read(Light, path, 8);
      EXPECT_EQ(Written(Light, *light, "light.jpg"), Written(Full, *light, "full.jpg"));
    } else {
      EXPECT_EQ(FailureOf(Full, path), "");
    }
  }
  EXPECT_GT(read, kRounds / 4);
}

TEST_F(LightJpegExif, LeaveToTheFullLibraryWhatTheyDoNotKnow) {
  const auto left = [&](const Fields& picture, const Fields& camera = {}, const Fields& place = {}) {
    ExpectLeft(Make(ExifTestBlock(false).Build(picture, camera, place)));
  };
  left({Text(0x010f, "CANON")});
  left({Text(0x0131, "Caf\xe9")});
  left({Text(0x0131, "two\nlines")});
  left({Short(0x0112, 9)});
  left({Short(0x0112, 0)});
  left({Text(0x0131, "one"), Text(0x0131, "another")});
  left({Text(0x010d, "A document")});
  left({Field{0x0131, 13, 1, {}, "four"}});
  left({Field{0x0131, 2, 0, {}, "none"}});
  left({Field{0x0131, 2, 60000, {}, "beyond the end"}});
  left({}, {Fraction(0x829a, 1, 0)});
  left({}, {Bytes(0x9000, "023")});
  left({}, {Bytes(0x9000, std::string("02\0\0", 4))});
  left({}, {Long(0xa005, 100000)});
  left({}, {}, {Bytes(0, "22", 1)});
  const std::string whole = ExifTestBlock(false).Build(kPicture, kCamera, kPlace);
  for (const std::size_t length : {9u, 30u, 300u, 900u})
    ExpectLeft(Make(whole.substr(0, length)));
  // A directory that leads to itself.
  ExpectLeft(Make(ExifTestBlock(false).Build({Long(0x8769, 8)}, {}, {})));
}

}  // namespace
}  // namespace vblur::host
