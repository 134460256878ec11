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
  static std::string Segment(int marker, const std::string& data) {
    const std::size_t length = data.size() + 2;
    return std::string{'\xff', static_cast<char>(marker), static_cast<char>(length >> 8),
                       static_cast<char>(length & 0xff)} +
           data;
  }
  static std::string ExifSegment(const std::string& block) {
    return Segment(0xe1, "Exif" + std::string(2, '\0') + block);
  }
  static std::string IptcSegment(const std::string& sets) {
    const std::size_t length = sets.size();
    return Segment(0xed, std::string("Photoshop 3.0\0008BIM\4\4\0\0\0\0", 24) + static_cast<char>(length >> 8) +
                             static_cast<char>(length & 0xff) + sets);
  }
  static std::string IptcSet(int number, const std::string& text) {
    return "\x1c\2" + std::string{static_cast<char>(number), '\0', static_cast<char>(text.size())} + text;
  }

  // Behind its head, or in its place.
  std::filesystem::path Make(const std::string& block, bool hasHead = true, int density = 0) const {
    return MakeOf(ExifSegment(block), hasHead, density);
  }
  std::filesystem::path MakeOf(const std::string& segments, bool hasHead = true, int density = 0) const {
    std::string jpeg = PlainBytes();
    constexpr std::size_t kHead = 18;
    if (density > 0) {
      jpeg[11 + 2] = 1;
      jpeg[15] = jpeg[17] = static_cast<char>(density);
    }
    jpeg = jpeg.substr(0, 2) + (hasHead ? jpeg.substr(2, kHead) : "") + segments + jpeg.substr(2 + kHead);
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

TEST_F(LightJpegExif, ReadAndWriteTheDirectoryOfCompatibility) {
  const auto block = [](std::uint64_t at) {
    return ExifTestBlock(false).Build(kPicture, {Short(0x8827, 400), Long(0xa005, at)}, kPlace);
  };
  const std::string without = block(0);
  // "R98", and no further directory.
  const std::string compatible("\1\0\1\0\2\0\4\0\0\0R98\0\0\0\0\0", 18);
  ExpectSame(Make(block(without.size()) + compatible));
  // That leads to another.
  const std::string leading("\1\0\x05\xa0\4\0\1\0\0\0\x08\0\0\0\0\0\0\0", 18);
  ExpectLeft(Make(block(without.size()) + leading));
}

// Of several strings the first is given, and the others are told.
TEST_F(LightJpegExif, ReadAndWriteTextsOfSeveralStrings) {
  const Field two = Text(0x0131, std::string("one\0two", 7));
  ExpectSame(Make(ExifTestBlock(false).Build({two}, {Text(0xa434, std::string("a\0b", 3))}, {})));
}

TEST_F(LightJpegExif, ReadAndWriteWithoutAHead) {
  ExpectSame(Make(ExifTestBlock(false).Build(kPicture, kCamera, kPlace), false));
  ExpectSame(Make(ExifTestBlock(true).Build({}, kCamera, {}), false));
}

TEST_F(LightJpegExif, ReadAndWriteItsResolution) {
  for (const int density : {0, 72, 96}) {
    for (const std::uint64_t unit : {0u, 1u, 2u, 3u, 4u}) {
      for (const std::uint64_t y : {0u, 72u, 300u}) {
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

// The description of Exif data goes before it.
TEST_F(LightJpegExif, ReadAndWriteAComment) {
  const std::string comment = Segment(0xfe, "A comment");
  const std::string same = Segment(0xfe, std::string("A picture\0", 10));
  for (const bool isDescribed : {false, true}) {
    const std::string exif =
        ExifSegment(ExifTestBlock(false).Build(isDescribed ? kPicture : Fields{Text(0x0131, "A program")}, {}, {}));
    for (const std::string& segments : {comment + exif, exif + comment, same + exif, exif + same}) {
      SCOPED_TRACE(isDescribed);
      const auto path = MakeOf(segments);
      // One of two texts is lost, which is told.
      const bool isKnown = FailureOf(Light, path).empty();
      EXPECT_EQ(isKnown, !isDescribed || segments.find("A comment") == std::string::npos);
      if (isKnown) ExpectSame(path);
    }
  }
}

TEST_F(LightJpegExif, ReadAndWriteIptcTexts) {
  const std::string program = IptcSet(65, "A program");
  const std::string all = program + IptcSet(80, "Me") + IptcSet(116, "Us") + IptcSet(120, "A picture");
  ExpectSame(MakeOf(IptcSegment(program)));
  ExpectSame(MakeOf(IptcSegment(all)));
  ExpectSame(MakeOf(IptcSegment(program + IptcSet(65, "Another"))));
  ExpectSame(MakeOf(ExifSegment(ExifTestBlock(false).Build(kPicture, {}, {})) + IptcSegment(all)));
  ExpectSame(MakeOf(Segment(0xfe, "A comment") + IptcSegment(all)));
}

// What either library has made of texts, again and again.
TEST_F(LightJpegExif, ReadAndWriteWhatTheyHaveWritten) {
  auto from = Make(ExifTestBlock(false).Build({Text(0x0131, "A program"), Text(0x010e, "A picture"), Text(0x8298, "Us"),
                                               Fraction(0x011a, 72, 1), Fraction(0x011b, 72, 1), Short(0x0128, 2)},
                                              {}, {}));
  const auto tiff = folder_.path() / "in.tif";
  Written(Full, *Read(Full, from, 8), "in.tif");
  from = tiff;
  for (const char* name : {"first.jpg", "second.jpg", "third.jpg"}) {
    Written(Light, *Read(Light, from, 8), name);
    from = folder_.path() / name;
    ExpectSame(from);
  }
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
  left({Bytes(0x0131, "x", 1)});
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
  const std::string exif = ExifSegment(ExifTestBlock(false).Build({Text(0x0131, "A program")}, {}, {}));
  const std::string iptc = IptcSegment(IptcSet(65, "A program"));
  ExpectLeft(MakeOf(iptc + exif));
  ExpectLeft(MakeOf(iptc + Segment(0xfe, "A comment")));
  ExpectLeft(MakeOf(iptc + iptc));
  ExpectLeft(MakeOf(IptcSegment(IptcSet(90, "Berlin"))));
  ExpectLeft(MakeOf(IptcSegment(IptcSet(80, "Me") + IptcSet(80, "You"))));
  ExpectLeft(MakeOf(IptcSegment(IptcSet(80, "Me; You"))));
  ExpectLeft(MakeOf(IptcSegment(IptcSet(80, " Me"))));
  ExpectLeft(MakeOf(IptcSegment(IptcSet(120, "Caf\xe9"))));
  ExpectLeft(MakeOf(IptcSegment(IptcSet(120, ""))));
  ExpectLeft(MakeOf(IptcSegment(IptcSet(65, "A program").substr(0, 9))));
  ExpectLeft(MakeOf(IptcSegment(IptcSet(65, "A program") + "more")));
  ExpectLeft(MakeOf(Segment(0xed, "Photoshop 3.0")));
  ExpectLeft(MakeOf(exif + exif));
  // A directory that leads to itself.
  ExpectLeft(Make(ExifTestBlock(false).Build({Long(0x8769, 8)}, {}, {})));
}

}  // namespace
}  // namespace vblur::host
