#include "host/formats/ExifTags.h"

#include <cstdint>
#include <string>

#include <OpenImageIO/tiffutils.h>
#include <gtest/gtest.h>

namespace vblur::host {
namespace {

TEST(ExifTags, AreThoseOfTheFullLibrary) {
  for (const char* domain : {"Exif", "GPS"}) {
    const ExifPart part = std::string(domain) == "GPS" ? ExifPart::Place : ExifPart::Camera;
    for (const OIIO::TagInfo& known : OIIO::tag_table(domain)) {
      SCOPED_TRACE(known.name);
      const ExifTag* const tag = FindExifTag(known.name);
      ASSERT_NE(tag, nullptr);
      EXPECT_EQ(tag->number, known.tifftag);
      EXPECT_EQ(tag->part == ExifPart::Place, part == ExifPart::Place);
      EXPECT_EQ(static_cast<int>(tag->type), static_cast<int>(known.tifftype));
      EXPECT_EQ(tag->count, known.tiffcount);
      const auto number = static_cast<std::uint16_t>(known.tifftag);
      const ExifTag* const numbered = FindExifTag(part, number);
      ASSERT_NE(numbered, nullptr);
      EXPECT_EQ(numbered->name, OIIO::tag_lookup(domain, known.tifftag)->name);
    }
  }
}

TEST(ExifTags, KnowNoOthers) {
  for (int number = 0; number < 0x10000; ++number) {
    for (const char* domain : {"Exif", "GPS"}) {
      const ExifPart part = std::string(domain) == "GPS" ? ExifPart::Place : ExifPart::Picture;
      const bool isKnown = FindExifTag(part, static_cast<std::uint16_t>(number)) != nullptr;
      EXPECT_EQ(isKnown, OIIO::tag_lookup(domain, number) != nullptr) << domain << ' ' << number;
    }
  }
  EXPECT_EQ(FindExifTag("FStop"), nullptr);
  EXPECT_EQ(FindExifTag("fnumber"), FindExifTag("FNumber"));
}

TEST(ExifTags, NameWhatIsGiven) {
  EXPECT_EQ(NameOfExifTag(ExifPart::Picture, 0x010f), "Make");
  EXPECT_EQ(NameOfExifTag(ExifPart::Camera, 0x8827), "Exif:PhotographicSensitivity");
  EXPECT_EQ(NameOfExifTag(ExifPart::Camera, 0x9000), "Exif:ExifVersion");
  EXPECT_EQ(NameOfExifTag(ExifPart::Camera, 0xa000), "Exif:FlashPixVersion");
  EXPECT_EQ(NameOfExifTag(ExifPart::Place, 1), "GPS:LatitudeRef");
  EXPECT_EQ(NameOfExifTag(ExifPart::Place, 0), "GPS:VersionID");
  EXPECT_EQ(NameOfExifTag(ExifPart::Place, 5), "GPS:AltitudeRef");
  EXPECT_EQ(NameOfExifTag(ExifPart::Camera, 1), "");
  // Of the picture's storage, a camera's notes, a comment, bytes, and where a directory lies.
  for (const int number : {0x0100, 0x927c, 0x9286, 0x9101, 0xa300, 0x8769})
    EXPECT_EQ(NameOfExifTag(ExifPart::Camera, static_cast<std::uint16_t>(number)), "") << number;
  EXPECT_EQ(NameOfExifTag(ExifPart::Place, 0x1b), "");
}

}  // namespace
}  // namespace vblur::host
