// Segments of files that the picture library reads and writes.
#include "host/formats/JpegSegments.h"

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "host/files/PictureReport.h"
#include "host/formats/FileBytes.h"
#include "host/pictures/PictureFileOpen.h"
#include "tests/support/host/ExifBytes.h"
#include "tests/support/host/JpegBytes.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

using namespace std::string_literals;

class JpegSegmentsOfAPhoto : public testing::Test {
 protected:
  JpegSegmentsOfAPhoto() {
    image_.Reset(8, 4, 16, 8);
    FillRandom(image_, 0, 255, 1);
    PictureWriter().Write(folder_.path() / "plain.jpg", image_, nullptr, true);
    plain_ = Bytes(folder_.path() / "plain.jpg");
    // The library adds some.
    const std::size_t exif = plain_.find("\xff\xe1");
    plain_.erase(exif, 2 + static_cast<std::size_t>(Big16(plain_, exif + 2)));
  }

  // The plain photo with more segments.
  std::filesystem::path Write(const std::string& segments) {
    std::string bytes = plain_;
    return folder_.Write("rich.jpg", bytes.insert(2, segments));
  }
  static std::string LostTo(const std::filesystem::path& file, const char* output) {
    return ListOf(LossesOf(ReportPicture(file), OutputFormatOf(output), {}, 8));
  }
  std::string PassOn(const std::filesystem::path& from, const char* to) {
    HostImage image;
    const auto read = PictureReader().ReadColour(from, 8, image);
    PictureWriter().Write(folder_.path() / to, image, read.metadata.get(), true);
    return ReportPicture(folder_.path() / to).info.exif;
  }

  ScratchFolder folder_;
  HostImage image_;
  std::string plain_;
};

TEST_F(JpegSegmentsOfAPhoto, WhatNothingKeepsIsReportedAsLost) {
  EXPECT_EQ(LostTo(folder_.path() / "plain.jpg", "out.jpg"), "");
  EXPECT_EQ(LostTo(Write(JpegSegment(0xe2, "MPF\0..."s)), "out.jpg"), "further pictures (MPF)");
  EXPECT_EQ(LostTo(folder_.Write("motion.jpg", plain_ + "\0\0\0\x18"s + "ftypmp42"), "out.jpg"),
            "data behind the picture");
}

TEST_F(JpegSegmentsOfAPhoto, ExifDataStaysAsItIsStored) {
  const std::string exif = ExifBytes{true, "abc", true, 16, 8}.Build();
  const auto file = Write(ExifSegment(exif));
  EXPECT_EQ(LostTo(file, "out.jpg"), "");
  EXPECT_EQ(PassOn(file, "out.jpg"), exif);
  // One segment, and nothing behind the end.
  const std::string out = Bytes(folder_.path() / "out.jpg");
  EXPECT_EQ(out.find("Exif"), out.rfind("Exif"));
  EXPECT_EQ(out.find("\xff\xd9"), out.size() - 2);
  EXPECT_EQ(LostTo(file, "out.png"), "");
  EXPECT_EQ(PassOn(file, "out.png"), exif);
  EXPECT_EQ(PassOn(folder_.path() / "out.png", "again.png"), exif);
  EXPECT_EQ(LostTo(file, "out.tif"), "maker note");
  // Texts of a PNG file are none of its Exif data.
  EXPECT_EQ(LostTo(folder_.path() / "out.png", "out.jpg"), "maker note");
  HostImage image;
  PictureReader().ReadColour(folder_.path() / "out.jpg", 8, image);
  EXPECT_EQ(image.Width(), 16);
}

TEST_F(JpegSegmentsOfAPhoto, DamagedExifDataIsNotPassedOn) {
  EXPECT_EQ(ReportPicture(Write(ExifSegment("II*"))).info.exif, "");
  EXPECT_EQ(LostTo(folder_.path() / "rich.jpg", "out.jpg"), "damaged Exif data");
  EXPECT_EQ(LostTo(Write(ExifSegment("II*\0\x08\0\0\0\1\0"s)), "out.jpg"), "damaged Exif data");
  EXPECT_EQ(LostTo(Write(ExifSegment("II*\0\x08\0\0\0\0\0\0\0\0\0"s)), "out.jpg"), "");
  EXPECT_EQ(ReportPicture(Write(ExifSegment(ExifBytes{}.Build()))).info.exif, ExifBytes{}.Build());
}

}  // namespace
}  // namespace vblur::host
