// JPEG files with Exif data by the light and by the full picture library.
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/host/light/LightPicturesTest.h"
#include "tests/support/host/RawPictures.h"

namespace vblur::host {
namespace {

struct Field {
  int number = 0;
  int type = 3;
  std::size_t count = 1;
  std::vector<std::uint64_t> values{};  // a fraction is two
  std::string text{};
};

Field Text(int number, const std::string& text) {
  return {number, 2, text.size() + 1, {}, text + '\0'};
}
Field Short(int number, std::uint64_t value) {
  return {number, 3, 1, {value}};
}
Field Long(int number, std::uint64_t value) {
  return {number, 4, 1, {value}};
}
Field Fraction(int number, std::uint64_t above, std::uint64_t below) {
  return {number, 5, 1, {above, below}};
}
Field Bytes(int number, const std::string& bytes, int type = 7) {
  return {number, type, bytes.size(), {}, bytes};
}

using Fields = std::vector<Field>;

// A block of Exif data with the directories of a picture, of its camera and of its place.
class Block {
 public:
  explicit Block(bool isBig) : isBig_(isBig), bytes_(isBig ? "MM" : "II") {
    Put(42, 2);
    Put(8, 4);
  }

  std::string Build(Fields picture, const Fields& camera, const Fields& place) {
    const std::size_t cameraAt = 8 + Size(picture.size() + !camera.empty() + !place.empty());
    const std::size_t placeAt = cameraAt + (camera.empty() ? 0 : Size(camera.size()));
    if (!camera.empty()) picture.push_back(Long(0x8769, cameraAt));
    if (!place.empty()) picture.push_back(Long(0x8825, placeAt));
    valuesAt_ = placeAt + (place.empty() ? 0 : Size(place.size()));
    for (const Fields* fields : {static_cast<const Fields*>(&picture), &camera, &place})
      if (!fields->empty()) Add(*fields);
    return bytes_ + values_;
  }

 private:
  static std::size_t Size(std::size_t fields) { return 2 + 12 * fields + 4; }
  std::string Number(std::uint64_t value, std::size_t count) const {
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i)
      bytes += static_cast<char>(value >> 8 * (isBig_ ? count - 1 - i : i) & 0xff);
    return bytes;
  }
  void Put(std::uint64_t value, std::size_t count) { bytes_ += Number(value, count); }

  void Add(const Fields& fields) {
    constexpr std::size_t kSizes[] = {0, 1, 1, 2, 4, 4, 1, 1, 2, 4, 4, 4, 8};
    Put(fields.size(), 2);
    for (const Field& field : fields) {
      std::string value = field.text;
      for (const std::uint64_t number : field.values)
        value += Number(number, kSizes[field.type]);
      Put(static_cast<std::uint64_t>(field.number), 2);
      Put(static_cast<std::uint64_t>(field.type), 2);
      Put(field.count, 4);
      if (value.size() > 4) {
        Put(valuesAt_ + values_.size(), 4);
        values_ += value;
      } else {
        value.resize(4, '\0');
        bytes_ += value;
      }
    }
    Put(0, 4);
  }

  bool isBig_;
  std::string bytes_;
  std::string values_;
  std::size_t valuesAt_ = 0;
};

const Fields kPicture = {Text(0x010e, "A picture"),
                         Text(0x010f, "A maker"),
                         Text(0x0110, "M-1"),
                         Short(0x0112, 6),
                         Fraction(0x011a, 300, 1),
                         Fraction(0x011b, 300, 1),
                         Short(0x0128, 2),
                         Text(0x0131, "Firmware 1.0"),
                         Text(0x0132, "2026:11:23 12:00:00"),
                         Text(0x013b, "Me"),
                         Short(0x0213, 1),
                         Text(0x8298, "Us")};
const Fields kCamera = {Fraction(0x829a, 1, 250),
                        Fraction(0x829d, 28, 10),
                        Short(0x8822, 2),
                        Short(0x8827, 400),
                        Short(0x8830, 2),
                        Bytes(0x9000, "0231"),
                        Text(0x9003, "2026:11:23 12:00:01"),
                        Text(0x9010, "+01:00"),
                        Bytes(0x9101, std::string("\1\2\3\0", 4)),
                        {0x9201, 10, 1, {7965784, 1000000}},
                        Fraction(0x9202, 2970854, 1000000),
                        {0x9204, 10, 1, {0xfffffffd, 3}},
                        Short(0x9207, 5),
                        Short(0x9209, 16),
                        Fraction(0x920a, 50, 1),
                        Bytes(0x927c, "notes of the camera"),
                        Bytes(0x9286, "ASCII\0\0\0hello"),
                        Text(0x9291, "42"),
                        Bytes(0xa000, "0100"),
                        Short(0xa001, 1),
                        Long(0xa002, 37),
                        Short(0xa003, 29),
                        Fraction(0xa20e, 5000, 1),
                        Bytes(0xa300, "\3"),
                        Short(0xa402, 0),
                        {0xa432, 5, 4, {24, 1, 70, 1, 28, 10, 28, 10}},
                        Text(0xa434, "24-70mm f/2.8"),
                        Text(0xa431, "0012345"),
                        Short(0xbabe, 1)};
const Fields kPlace = {Bytes(0x0000, std::string("\2\3\0\0", 4), 1),
                       Text(0x0001, "N"),
                       {0x0002, 5, 3, {52, 1, 31, 1, 1234, 100}},
                       Bytes(0x0005, std::string(1, '\0'), 1),
                       Fraction(0x0006, 345, 10),
                       Text(0x001d, "2026:11:23"),
                       Bytes(0x001b, "GPS"),
                       Short(0x0123, 4)};

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
  void ExpectSame(const std::filesystem::path& path) const { LightPicturesTest::ExpectSame(path, "out.jpg"); }
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
    ExpectSame(Make(Block(isBig).Build(kPicture, kCamera, kPlace)));
    ExpectSame(Make(Block(isBig).Build(kPicture, {}, {})));
    ExpectSame(Make(Block(isBig).Build({}, kCamera, {})));
    ExpectSame(Make(Block(isBig).Build({}, {}, kPlace)));
  }
}

TEST_F(LightJpegExif, ReadAndWriteWithoutAHead) {
  ExpectSame(Make(Block(false).Build(kPicture, kCamera, kPlace), false));
  ExpectSame(Make(Block(true).Build({}, kCamera, {}), false));
}

TEST_F(LightJpegExif, ReadAndWriteItsResolution) {
  for (const int density : {0, 72, 96}) {
    for (const std::uint64_t unit : {0, 1, 2, 3, 4}) {
      for (const std::uint64_t y : {0, 72, 300}) {
        SCOPED_TRACE(std::to_string(density) + ' ' + std::to_string(unit) + ' ' + std::to_string(y));
        Fields fields = {Text(0x010f, "A maker"), Fraction(0x011a, 72, 1)};
        if (y > 0) fields.push_back(Fraction(0x011b, y, 1));
        if (unit > 0) fields.push_back(Short(0x0128, unit));
        const auto path = Make(Block(false).Build(fields, {}, {}), true, density);
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
  std::string block = Block(false).Build({Text(0x010f, "A maker"), Short(0x0112, 1)}, {}, {});
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
    const auto pick = [&](const Fields& from) {
      Fields fields;
      for (const Field& field : from) {
        if (random() % 4 != 0) continue;
        fields.push_back(field);
        if (random() % 16 != 0) continue;
        Field& other = fields.back();
        other.type = static_cast<int>(random() % 12) + 1;
        other.count = random() % 3 + 1;
        other.text.clear();
        other.values.assign(other.count * (other.type == 5 || other.type == 10 ? 2 : 1), random() % 100 + 1);
        if (other.type == 2) other = Text(other.number, std::string(other.count, 'x'));
      }
      return fields;
    };
    const std::string block = Block(random() % 2 == 0).Build(pick(kPicture), pick(kCamera), pick(kPlace));
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
    ExpectLeft(Make(Block(false).Build(picture, camera, place)));
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
  const std::string whole = Block(false).Build(kPicture, kCamera, kPlace);
  for (const std::size_t length : {9u, 30u, 300u, 900u})
    ExpectLeft(Make(whole.substr(0, length)));
  // A directory that leads to itself.
  ExpectLeft(Make(Block(false).Build({Long(0x8769, 8)}, {}, {})));
}

}  // namespace
}  // namespace vblur::host
