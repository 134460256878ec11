#include "host/formats/JpegSegments.h"

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/formats/FileBytes.h"
#include "tests/support/host/ExifBytes.h"
#include "tests/support/host/JpegBytes.h"

namespace vblur::host {
namespace {

using namespace std::string_literals;
using Kinds = std::vector<std::string>;

JpegFacts Facts(const std::string& segments) {
  std::istringstream file(segments + JpegSegment(0xda, "") + JpegSegment(0xe2, "MPF\0 behind"s));
  return FactsOfJpeg(file);
}

TEST(JpegSegments, NameWhatTheReaderPassesOver) {
  EXPECT_EQ(Facts(JpegSegment(0xe0, "JFIF\0"s) + CommentSegment()).unread, Kinds{});
  EXPECT_EQ(Facts(JpegSegment(0xe2, "MPF\0..."s)).unread, Kinds{"further pictures (MPF)"});
  EXPECT_EQ(Facts(JpegSegment(0xe2, "ICC_PROFILE\0"s)).unread, Kinds{});
  EXPECT_EQ(Facts(JpegSegment(0xe1, "http://ns.adobe.com/xap/1.0/")).unread, Kinds{"XMP data"});
  EXPECT_EQ(Facts(JpegSegment(0xe1, "FLIR")).unread, Kinds{"segments of applications"});
  EXPECT_EQ(Facts(JpegSegment(0xe3, "")).unread, Kinds{"segments of applications"});
  EXPECT_EQ(Facts(JpegSegment(0xef, "") + JpegSegment(0xe4, "")).unread, Kinds{"segments of applications"});
  EXPECT_EQ(Facts(JpegSegment(0xee, "Adobe") + JpegSegment(0xed, "Photoshop 3.0")).unread, Kinds{});
  EXPECT_EQ(Facts(CommentSegment() + CommentSegment()).unread, Kinds{});
  EXPECT_EQ(Facts(CommentSegment() + JpegSegment(0xfe, "another")).unread, Kinds{"comment"});
  EXPECT_EQ(Facts("\xff\xff" + JpegSegment(0xe2, "MPF\0..."s)).unread, Kinds{"further pictures (MPF)"});
  EXPECT_EQ(Facts(JpegSegment(0xeb, "JP\0\1"s) + JpegSegment(0xeb, "JP\0\1"s)).unread, Kinds{"signed history (JUMBF)"});
  const std::string described = ExifSegment(ExifBytes{false, "abc"}.Build());
  EXPECT_EQ(Facts(described + CommentSegment()).unread, Kinds{"comment"});
  EXPECT_EQ(Facts(described).unread, Kinds{});
  EXPECT_EQ(Facts(described + JpegSegment(0xfe, "abc\0"s)).unread, Kinds{});
  EXPECT_EQ(Facts(ExifSegment(ExifBytes{}.Build()) + CommentSegment()).unread, Kinds{});
}

TEST(JpegSegments, NameExifDataBesideTheFirst) {
  const std::string exif = ExifSegment(ExifBytes{false, "abc"}.Build());
  EXPECT_EQ(Facts(exif + exif).unread, Kinds{});
  EXPECT_EQ(Facts(exif + ExifSegment("another")).unread, Kinds{"further Exif data"});
}

// A resource as an application writes it.
std::string Resource(const std::string& id, const std::string& name, const std::string& data) {
  std::string text = "8BIM" + id + static_cast<char>(name.size()) + name;
  if (name.size() % 2 == 0) text += '\0';
  text += "\0\0"s + static_cast<char>(data.size() >> 8) + static_cast<char>(data.size() & 0xff) + data;
  return data.size() % 2 == 0 ? text : text + '\0';
}

TEST(JpegSegments, NameResourcesButIptcData) {
  const auto unread = [](const std::string& resources) {
    return Facts(JpegSegment(0xed, "Photoshop 3.0\0"s + resources)).unread;
  };
  const std::string iptc = Resource("\4\4", "", "odd");
  const std::string sum = Resource("\4\x25", "", std::string(16, 's'));
  const std::string other = Resource("\3\xed", "", "data");
  const Kinds resources{"image resources (8BIM)"};
  EXPECT_EQ(unread(""), Kinds{});
  EXPECT_EQ(unread(iptc), Kinds{});
  EXPECT_EQ(unread(iptc + sum), Kinds{});
  EXPECT_EQ(unread(iptc + other), resources);
  EXPECT_EQ(unread(iptc + sum + Resource("\7\xd0", "path", "")), resources);
  EXPECT_EQ(unread(sum + iptc), Kinds{"IPTC data behind other resources"});
  EXPECT_EQ(unread(Resource("\4\4", "nam", "data")), Kinds{"IPTC data behind other resources"});
  // Those that go on in another segment, damaged ones, and padding.
  EXPECT_EQ(unread(iptc + "more data"), resources);
  EXPECT_EQ(unread(iptc + "\0\0\0"s), Kinds{});
  for (std::size_t length = 5; length < 12; ++length)
    EXPECT_EQ(unread(iptc + other.substr(0, length)), resources) << length;
  EXPECT_EQ(unread("8BIM\4\4\xff"s), resources);
  EXPECT_EQ(unread("8BIM\4\4\0\0\xff\xff\xff\xff"s), Kinds{});
}

TEST(JpegSegments, NameDataBehindThePicture) {
  const Kinds behind{"data behind the picture"};
  const auto unread = [](const std::string& bytes) {
    std::istringstream file(bytes);
    return FactsOfJpeg(file).unread;
  };
  const std::string scan = JpegSegment(0xda, "\1\1\0"s);
  // Zeros, restarts and tables in the pixels, and any number of bytes before a marker.
  const std::string pixels = scan + "ab\xff\0c\xff\xd0"s + "d" + JpegSegment(0xc4, "\xff\xd9") + scan + "e\xff\xff";
  const std::string picture = pixels + "\xd9";
  EXPECT_EQ(unread(picture), Kinds{});
  EXPECT_EQ(unread(picture + "\0\0\0\0ftyp"s), behind);
  EXPECT_EQ(unread(picture + std::string(1000, '\0')), Kinds{});
  EXPECT_EQ(unread(pixels), Kinds{});
  EXPECT_EQ(unread(pixels + "\xc4\xff"), Kinds{});
  EXPECT_EQ(unread(pixels + "\xc4\0\1\xff\xd9more"s), behind);
  // Further pictures of a known kind are told by themselves.
  const std::string further = "\xff\xd8"s + JpegSegment(0xe1, "\xff\xd9") + picture;
  const std::string index = JpegSegment(0xe2, "MPF\0"s);
  EXPECT_EQ(unread(picture + further), behind);
  EXPECT_EQ(unread(index + picture + "\0\0"s + further + further), Kinds{"further pictures (MPF)"});
  EXPECT_EQ(unread(index + picture + further + "video"), (Kinds{"further pictures (MPF)", "data behind the picture"}));
  EXPECT_EQ(unread(index + picture + "\xff"), (Kinds{"further pictures (MPF)", "data behind the picture"}));
}

TEST(JpegSegments, GiveExifDataAsItIsStored) {
  const std::string block = ExifBytes{true, "abc"}.Build();
  EXPECT_EQ(Facts(JpegSegment(0xe0, "JFIF\0"s) + ExifSegment(block) + ExifSegment("another")).exif, block);
  EXPECT_EQ(Facts(JpegSegment(0xe1, "http://ns.adobe.com/xap/1.0/")).exif, "");
  EXPECT_EQ(Facts("\xff\xff\xff" + ExifSegment(block)).exif, block);
}

TEST(JpegSegments, DamagedOnesAreReadToWhereTheyEnd) {
  const auto unread = [](const std::string& bytes) {
    std::istringstream file(bytes);
    return FactsOfJpeg(file).unread;
  };
  EXPECT_EQ(unread("\xff\xe2\xff\xff"s + "MPF\0"s), Kinds{});
  EXPECT_EQ(unread("\xff\xe2\0\1"s + JpegSegment(0xe2, "MPF\0"s)), Kinds{});
  EXPECT_EQ(unread("picture" + JpegSegment(0xe2, "MPF\0"s)), Kinds{});
}

TEST(JpegSegments, ExifDataTakesThePlaceOfAllThatThereWas) {
  const std::string start = "\xff\xd8"s;
  const std::string jfif = JpegSegment(0xe0, "JFIF\0"s);
  const std::string rest = JpegSegment(0xe1, "http://") + JpegSegment(0xda, "") + ExifSegment("pixels");
  EXPECT_EQ(WithExif(start + jfif + ExifSegment("old") + ExifSegment("older") + rest, "new"),
            start + jfif + ExifSegment("new") + rest);
  EXPECT_EQ(WithExif(start + ExifSegment("old") + rest, "new"), start + ExifSegment("new") + rest);
  EXPECT_EQ(WithExif(start + rest, std::string(0xffff - 8, 'n')),
            start + ExifSegment(std::string(0xffff - 8, 'n')) + rest);
  EXPECT_EQ(WithExif(start + rest, std::string(0xffff - 7, 'n')), start + rest);
  EXPECT_EQ(WithExif("picture", "new"), "picture");
}

TEST(JpegSegments, TextsStandBehindTheFirstAndIptcDataComeBack) {
  const std::string start = "\xff\xd8"s + JpegSegment(0xe0, "JFIF\0"s);
  const std::string rest = JpegSegment(0xda, "");
  const std::string resource = "Photoshop 3.0\0"s + "8BIM\x04\x04\0\0\0\0\0\x03"s + "abc\0"s;
  EXPECT_EQ(WithTexts(start + rest, "comment", "abc"), start + CommentSegment() + JpegSegment(0xed, resource) + rest);
  EXPECT_EQ(WithTexts(start + rest, "", ""), start + rest);
  EXPECT_EQ(WithTexts(start + rest, std::string(kMostInSegment + 1, 'c'), std::string(kMostInSegment + 1, 'i')),
            start + rest);
  EXPECT_EQ(IptcOf(resource), "abc");
  EXPECT_EQ(IptcOf(resource.substr(0, 20)), "");
  EXPECT_EQ(IptcOf("Photoshop 3.0\0"s + "8BIM\x03\xed\0\0\0\0\0\x03"s + "abc\0"s), "");
}

}  // namespace
}  // namespace vblur::host
