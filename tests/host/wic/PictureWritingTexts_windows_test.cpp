// Texts, places and resolutions that pass between files with the imaging component.
#include <gtest/gtest.h>

#include "host/files/PictureReport.h"
#include "host/formats/FileExtras.h"
#include "host/formats/PngHead.h"
#include "tests/host/wic/PictureWriting_windows.h"
#include "tests/support/host/ExifBytes.h"
#include "tests/support/host/JpegBytes.h"
#include "tests/support/host/PngBytes.h"
#include "tests/support/host/TiffBytes.h"

namespace vblur::host {
namespace {

// Made of the five texts, and what is the same in all files that hold them.
class PictureWritingTexts : public PictureWriting {
 protected:
  using Texts = PictureTexts;
  static std::string Known(const char* name) { return Bytes(std::filesystem::path(VBLUR_PICTURES_FOLDER) / name); }
  static std::string Png(const std::string& chunks) { return WithChunksOf(Known("rgb8.png"), chunks); }
  static std::string Jpeg(const std::string& segments) {
    const std::string plain = Known("rgb.jpg");
    return plain.substr(0, 20) + segments + plain.substr(20);
  }
  // Writes a file of these bytes as another; returns what the other holds.
  FileExtras Pass(const std::string& from, const std::string& bytes, const std::string& to, const Notes& notes) {
    const auto source = folder_.Write(from, bytes);
    const ReadPicture read = PictureReader().ReadColour(source, 8, image_);
    const auto path = folder_.path() / to;
    Notes told = Write(path, {}, read.metadata.get());
    std::erase_if(told, [](const std::string& note) { return note.find("lost: compression") != std::string::npos; });
    EXPECT_EQ(told, notes) << from << " to " << to;
    written_ = Bytes(path);
    const PictureInfo info = ReadPictureInfo(path);
    EXPECT_EQ(info.unread, std::vector<std::string>{}) << from << " to " << to;
    return ReadFileExtras(path, info.format, info.exif);
  }
  static Texts TextsOf(const FileExtras& extras) {
    Texts all = extras.texts;
    all.insert(extras.exifTexts.begin(), extras.exifTexts.end());
    return all;
  }

  const Texts texts_{
      {270, "A fox"}, {305, "A program"}, {306, "2020:01:02 03:04:05"}, {315, "J\u00f6rg"}, {33432, "\u00a9 somebody"}};
  std::string written_;
};

TEST_F(PictureWritingTexts, GoThroughAllFormatsThatHoldThem) {
  TiffBytes file(2, 2, 8, 3, "abcdefghijkl");
  for (const auto& [tag, text] : texts_)
    file.Text(tag, text);
  const std::string tiff = file.Short(274, {6}).File();
  for (const char* first : {"1.png", "1.jpg", "1.tif"}) {
    const FileExtras once = Pass("source.tif", tiff, first, {});
    EXPECT_EQ(TextsOf(once), texts_) << first;
    EXPECT_EQ(once.orientation, 6) << first;
    const std::string bytes = written_;
    for (const char* second : {"2.png", "2.jpg", "2.tif"}) {
      const FileExtras twice = Pass(first, bytes, second, {});
      EXPECT_EQ(TextsOf(twice), texts_) << first << " " << second;
      EXPECT_EQ(twice.orientation, 6) << first << " " << second;
    }
  }
}

TEST_F(PictureWritingTexts, TheCameraOfATiffFilePassesAndItsExifDataAreTold) {
  TiffBytes file(2, 2, 8, 3, "abcdefghijkl");
  const std::string camera = file.Text(271, "Maker").Text(272, "Model").File();
  for (const char* name : {"out.png", "out.jpg", "out.tif"}) {
    Pass("source.tif", camera, name, {});
    EXPECT_NE(written_.find(std::string("Maker\0", 6)), std::string::npos) << name;
    EXPECT_NE(written_.find(std::string("Model\0", 6)), std::string::npos) << name;
  }
  const std::string exif = TiffBytes(2, 2, 8, 3, "abcdefghijkl").Long(34665, {8}).Long(34853, {8}).File();
  for (const char* name : {"out.png", "out.jpg", "out.tif"})
    Pass("source.tif", exif, name, {"output: lost: Exif data, GPS data"});
}

TEST_F(PictureWritingTexts, OfAPngFileJoinItsExifDataInAJpegFile) {
  for (const bool isBig : {false, true}) {
    const std::string exif = ExifBytes{.isBig = isBig, .description = "fox"}.Build();
    const std::string png = Png(PngChunk("eXIf", exif) + PngChunk("tEXt", std::string("Author\0me", 9)));
    EXPECT_EQ(TextsOf(Pass("source.png", png, "out.jpg", {})), (Texts{{270, "fox"}, {315, "me"}}));
    EXPECT_EQ(TextsOf(Pass("source.png", png, "out.png", {})), (Texts{{270, "fox"}, {315, "me"}}));
  }
}

TEST_F(PictureWritingTexts, ThatAreTooLongForAJpegFileAreTold) {
  const std::string png = Png(PngChunk("tEXt", std::string("Author\0", 7) + std::string(70000, 'x')));
  const FileExtras extras =
      Pass("source.png", png, "out.jpg", {"output: lost: Artist (longer than files of this format hold)"});
  EXPECT_EQ(TextsOf(extras), Texts{});
  EXPECT_EQ(TextsOf(Pass("source.png", png, "out.tif", {})).at(315).size(), 70000u);
}

TEST_F(PictureWritingTexts, TheCommentOfAJpegFileIsItsDescription) {
  const std::string jpeg = Jpeg(CommentSegment());
  for (const char* name : {"out.png", "out.jpg", "out.tif"})
    EXPECT_EQ(TextsOf(Pass("source.jpg", jpeg, name, {})), (Texts{{270, "comment"}})) << name;
  Pass("source.jpg", jpeg, "out.jpg", {});
  EXPECT_NE(written_.find(CommentSegment()), std::string::npos);
  Pass("source.jpg", jpeg, "out.bmp", {"output: lost: text"});
}

TEST_F(PictureWritingTexts, IptcDataPassBetweenJpegAndTiffFiles) {
  // A caption: Hello.
  const std::string iptc("\x1c\x02\x78\0\x05Hello", 10);
  const std::string resource =
      std::string("Photoshop 3.0\0", 14) + std::string("8BIM\x04\x04\0\0\0\0\0\x0a", 12) + iptc;
  const std::string jpeg = Jpeg(JpegSegment(0xed, resource));
  EXPECT_EQ(Pass("source.jpg", jpeg, "out.jpg", {}).iptc, iptc);
  // Whole numbers of four bytes.
  EXPECT_EQ(Pass("source.jpg", jpeg, "out.tif", {}).iptc, iptc + std::string(2, '\0'));
  const std::string tiff = written_;
  EXPECT_EQ(Pass("source.tif", tiff, "out.tif", {}).iptc, iptc + std::string(2, '\0'));
  EXPECT_EQ(Pass("source.tif", tiff, "out.jpg", {}).iptc, iptc + std::string(2, '\0'));
  Pass("source.jpg", jpeg, "out.png", {"output: lost: IPTC data"});
}

TEST_F(PictureWritingTexts, AResolutionWithoutAUnitPassesFromTiffToTiff) {
  TiffBytes file(3, 1, 8, 3, "abcdefghi");
  const std::string tiff = file.Short(282, {4}).Short(283, {3}).Short(296, {1}).File();
  EXPECT_TRUE(Pass("source.tif", tiff, "out.tif", {}).hasPixelAspect);
  Pass("source.tif", tiff, "out.png", {"output: lost: pixel aspect"});
  std::string jpeg = Jpeg("");
  jpeg.replace(13, 5, std::string("\0\0\4\0\3", 5));
  Pass("source.jpg", jpeg, "out.png", {"output: lost: pixel aspect"});
  Pass("source.jpg", jpeg, "out.jpg", {"output: lost: pixel aspect"});
}

TEST_F(PictureWritingTexts, TheTimeAndThePlacePassFromPngToPng) {
  const std::string time = PngChunk("tIME", std::string("\x07\xe4\x01\x02\x03\x04\x05", 7));
  const std::string place = PngChunk("oFFs", std::string("\0\0\0\x05\0\0\0\x07\0", 9));
  const std::string scale = PngChunk("pHYs", std::string("\0\0\0\x02\0\0\0\x01\0", 9));
  std::string plain = Known("rgb8.png");
  if (const std::size_t at = plain.find("oFFs"); at != std::string::npos) plain.erase(at - 4, 21);
  const std::string png = WithChunksOf(plain, time + place + scale);
  Pass("source.png", png, "out.png", {});
  for (const std::string& chunk : {time, place, scale}) {
    EXPECT_LT(written_.find(chunk), written_.find("IDAT"));
    EXPECT_EQ(written_.find(chunk.substr(4, 4)), written_.rfind(chunk.substr(4, 4)));
  }
  const FileExtras tiff = Pass("source.png", png, "out.tif", {"output: lost: pixel aspect, attribute oFFs"});
  EXPECT_EQ(TextsOf(tiff), (Texts{{306, "2020:01:02 03:04:05"}}));
}

TEST_F(PictureWritingTexts, DamagedChunksAreTold) {
  std::string text = PngChunk("tEXt", std::string("Author\0me", 9));
  text.back() = static_cast<char>(text.back() ^ 1);
  Pass("source.png", Png(text), "out.png", {"output: lost: damaged PNG chunk tEXt"});
  EXPECT_EQ(written_.find("tEXt"), std::string::npos);
  for (const std::string& profile : {std::string("nothing"), std::string("x\0\0no profile", 13)}) {
    Pass("source.png", Png(PngChunk("iCCP", profile)), "out.png",
         {"output: lost: colour profile (damaged, or for other colours)"});
    EXPECT_EQ(written_.find("iCCP"), std::string::npos);
  }
}

}  // namespace
}  // namespace vblur::host
