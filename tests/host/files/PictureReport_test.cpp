// What is printed of a file's metadata: the same lines on every system, from files made byte by byte.
#include "host/files/PictureReport.h"

#include <gtest/gtest.h>

#include "host/formats/PngHead.h"
#include "host/formats/TiffDirectory.h"
#include "tests/support/host/ExifBytes.h"
#include "tests/support/host/JpegBytes.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/PngBytes.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/TiffBytes.h"

namespace vblur::host {
namespace {

using namespace std::string_literals;

class PictureReportLines : public testing::Test {
 protected:
  std::string LinesOf(const std::string& name, const std::string& bytes) const {
    std::string lines;
    for (const auto& [attribute, value] : ReportPicture(folder_.Write(name, bytes)).attributes)
      lines += attribute + ": " + value + "\n";
    return lines;
  }

  static std::string Known(const char* name) { return Bytes(std::filesystem::path(VBLUR_PICTURES_FOLDER) / name); }
  static std::string Png(const std::string& chunks) { return WithChunksOf(Known("rgb8.png"), chunks); }
  // With a segment that says 72 x 96 pixels an inch.
  static std::string Jpeg(const std::string& segments) {
    const std::string plain = Known("rgb.jpg");
    return plain.substr(0, 13) + "\x01\0\x48\0\x60"s + plain.substr(18, 2) + segments + plain.substr(20);
  }

  ScratchFolder folder_;
};

TEST_F(PictureReportLines, OfAPngFile) {
  const std::string chunks = PngChunk("tEXt", "Title\0Hallo"s) + PngChunk("tIME", "\x07\xe4\x01\x02\x03\x04\x05"s) +
                             PngChunk("tEXt", "Author\0J\xf6rg"s) +
                             PngChunk("iTXt", "Copyright\0\0\0de\0Recht\0\xc2\xa9 me"s) +
                             PngChunk("tEXt", "Weather\0rain"s) + PngChunk("pHYs", "\0\0\x0b\x13\0\0\x16\x26\x01"s);
  EXPECT_EQ(
      LinesOf("p.png", Png(chunks)),
      "DateTime: 2020:01:02 03:04:05\nDocumentName: Hallo\nArtist: J\u00f6rg\nCopyright: \u00a9 me\nWeather: rain\n"
      "ResolutionUnit: inch\nXResolution: 72.009\nYResolution: 144.018\nPixelAspectRatio: 2\n");
  EXPECT_EQ(LinesOf("q.png", Png(PngChunk("pHYs", "\0\0\0\x02\0\0\0\x01\0"s))),
            "ResolutionUnit: none\nXResolution: 2\nYResolution: 1\nPixelAspectRatio: 0.5\n");
}

TEST_F(PictureReportLines, OfExifData) {
  const std::string exif = ExifBytes{.description = "fox"}.Build();
  const std::string lines =
      "ImageDescription: fox\nExif:ExifVersion: note\nExif:PixelXDimension: 40\nExif:PixelYDimension: 70000\n";
  EXPECT_EQ(LinesOf("e.png", Png(PngChunk("eXIf", exif))), lines);
  EXPECT_EQ(LinesOf("e.jpg", Jpeg(ExifSegment(exif))),
            lines + "XResolution: 72\nYResolution: 96\nPixelAspectRatio: 1.33333\nResolutionUnit: in\n");
  const std::string camera = WithTiffTags("", {{0x010f, {2, 5, "Maker"s}},
                                               {0x0112, {3, 1, "\x06\0"s}},
                                               {0x829a, {5, 1, "\x01\0\0\0\x64\0\0\0"s}},
                                               {0x9204, {10, 1, "\xff\xff\xff\xff\x03\0\0\0"s}}});
  EXPECT_EQ(LinesOf("c.png", Png(PngChunk("eXIf", camera))),
            "Make: Maker\nOrientation: 6\nExposureTime: 0.01\nExif:ExposureBiasValue: -0.333333\n");
}

TEST_F(PictureReportLines, OfAJpegFile) {
  EXPECT_EQ(
      LinesOf("c.jpg", Jpeg(CommentSegment())),
      "ImageDescription: comment\nXResolution: 72\nYResolution: 96\nPixelAspectRatio: 1.33333\nResolutionUnit: in\n");
}

// 4 wide by 3 high: a pixel is three quarters as wide as it is high. PNG files say the same of it.
TEST_F(PictureReportLines, OfAJpegFileWithoutAUnit) {
  std::string jpeg = Jpeg("");
  jpeg.replace(13, 5, "\0\0\4\0\3"s);
  const std::string lines = "XResolution: 4\nYResolution: 3\nPixelAspectRatio: 0.75\nResolutionUnit: none\n";
  EXPECT_EQ(LinesOf("u.jpg", jpeg), lines);
}

TEST_F(PictureReportLines, OfATiffFile) {
  for (const bool isBig : {false, true}) {
    TiffBytes file(3, 1, 8, 3, "abcdefghi", isBig);
    file.Text(270, "A fox").Text(271, "Maker").Text(306, "2020:01:02 03:04:05").Text(315, "J\u00f6rg");
    file.Short(274, {6}).Short(296, {3}).Text(269, "Name").Text(316, "Host");
    EXPECT_EQ(LinesOf("t.tif", file.File()),
              "ImageDescription: A fox\nOrientation: 6\nResolutionUnit: cm\nMake: Maker\nArtist: J\u00f6rg\n"
              "DateTime: 2020:01:02 03:04:05\nDocumentName: Name\nHostComputer: Host\n");
  }
}

TEST_F(PictureReportLines, OfABmpFile) {
  std::string file = Known("rgb.bmp");
  file.replace(38, 8, "\x13\x0b\0\0\x13\x0b\0\0"s);
  EXPECT_EQ(LinesOf("b.bmp", file), "XResolution: 2835\nYResolution: 2835\nResolutionUnit: m\n");
}

}  // namespace
}  // namespace vblur::host
