// What is told of a file that is not read whole.
#include <chrono>

#include <gtest/gtest.h>

#include "host/files/PictureFile.h"
#include "host/files/PictureReport.h"
#include "host/formats/FileBytes.h"
#include "tests/support/host/ExifBytes.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/JpegBytes.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/PlainFiles.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/TiffBytes.h"

namespace vblur::host {
namespace {

class PictureLosses : public testing::Test {
 protected:
  std::vector<std::string> Read(const std::filesystem::path& path, std::int32_t depth) {
    return PictureReader().ReadColour(path, depth, image_).losses;
  }

  ScratchFolder folder_;
  HostImage image_;
};

TEST_F(PictureLosses, FurtherPicturesAreTold) {
  const auto first = FlatPicture<std::uint8_t>(8, 4, 3, 51);
  const auto next = FlatPicture<std::uint8_t>(8, 4, 3, 204);
  const auto path = WriteTiff(folder_.path() / "pages.tif", std::vector{first, next, next});
  EXPECT_EQ(ReadPictureInfo(path).pictures, 3);
  EXPECT_EQ(Read(path, 8),
            std::vector<std::string>{path.string() +
                                     ": only the first of 3 pictures is read; the others are not in the output"});
  EXPECT_EQ(Component(image_, 0), 51);
  EXPECT_EQ(Read(WriteTiff(folder_.path() / "one.tif", first), 8), std::vector<std::string>());
}

// Some libraries follow them as often as they may.
TEST_F(PictureLosses, DirectoriesThatLeadInACircleAreCountedOnce) {
  const auto number = [](std::size_t value) {
    return std::string{static_cast<char>(value & 0xff), static_cast<char>(value >> 8), '\0', '\0'};
  };
  const std::string file = TiffBytes(2, 1, 8, 3, "abcdef").File();
  const auto place = static_cast<std::size_t>(Little32(file, 4));
  const std::string without = file.substr(0, file.size() - 4);
  const std::string directory = without.substr(place);
  const auto one = folder_.Write("one.tif", without + number(place));
  EXPECT_EQ(ReadPictureInfo(one).pictures, 1);
  EXPECT_EQ(Read(one, 8), std::vector<std::string>());
  const auto two = folder_.Write("two.tif", without + number(file.size()) + directory + number(place));
  EXPECT_EQ(ReadPictureInfo(two).pictures, 2);
  for (const auto& path : {one, two})
    EXPECT_EQ(ReadPictureInfo(path).levels, 1);
}

TEST_F(PictureLosses, PicturesWithMorePixelsThanTheyMayHaveAreRefused) {
  const auto path = WritePng(folder_.path() / "one.png", FlatPicture<std::uint8_t>(8, 4, 3, 51));
  ReadChoice choice;
  choice.mostPixels = 31;
  const auto failure = CaughtFailure([&] { PictureReader().ReadColour(path, 8, image_, choice); });
  EXPECT_EQ(failure->what(), path.string() + ": cannot read: 8 x 4 pixels, 32 in all, expected at most 31");
  EXPECT_EQ(failure->Kind(), FailureKind::TooManyPixels);
  choice.mostPixels = 32;
  EXPECT_NO_THROW(PictureReader().ReadColour(path, 8, image_, choice));
}

TEST_F(PictureLosses, WhatTheSystemsCodecDoesNotWriteIsOne) {
  PictureReport report;
  report.info.format = "tiff";
  report.info.all = {{"Y", {}}};
  report.info.choice = {0, 0, 0, -1};
  report.compression = "lzw";
  PartsLacking& lacking = report.lacking["tiff"];
  const OutputFormat& tiff = OutputFormatOf("a.tif");
  EXPECT_EQ(ListOf(LossesOf(report, tiff, {}, 8)), "");
  EXPECT_EQ(OutputCompressionOf(report, tiff, {}), "lzw");
  lacking.compressions = {{"lzw", "none"}};
  lacking.greys.Add(SampleType::Unsigned8);
  lacking.quality = true;
  const std::string others = ", quality (the system's codec has one of its own)";
  const std::string grey = "grey (red, green and blue are written)";
  EXPECT_EQ(ListOf(LossesOf(report, tiff, {}, 8)), grey + ", compression lzw (none is written)" + others);
  EXPECT_EQ(OutputCompressionOf(report, tiff, {}), "none");
  EXPECT_EQ(OutputLayoutOf(report, tiff, {}), PixelLayout::Rgb);
  // Nor where it takes the place of a file that it is not made like.
  const auto beside = [&](const OutputFormat& format, PixelLayout pixels) {
    return ListOf(LossesBesideOf(report, format, {}, SampleType::Unsigned8, pixels, 8));
  };
  EXPECT_EQ(beside(tiff, PixelLayout::Grey), grey + ", compression lzw (none is written)" + others);
  EXPECT_EQ(beside(tiff, PixelLayout::Rgb), "compression lzw (none is written)" + others);
  EXPECT_EQ(beside(OutputFormatOf("a.png"), PixelLayout::Rgb), "");
  // Neither is missed where the user asks for something else.
  OutputStorage zip;
  zip.compression = "zip";
  EXPECT_EQ(ListOf(LossesOf(report, tiff, zip, 8)), grey + others);
  EXPECT_EQ(OutputCompressionOf(report, tiff, zip), "zip");
  EXPECT_EQ(ListOf(LossesOf(report, OutputFormatOf("a.png"), {}, 8)), "");
}

TEST_F(PictureLosses, OtherAttributesAreNamed) {
  PictureReport report;
  report.info.format = "tiff";
  report.info.choice.alpha = -1;
  report.metadata.Add(MetadataGroup::Other);
  report.beyondText.Add(MetadataGroup::Other);
  const auto lost = [&] { return ListOf(LossesOf(report, OutputFormatOf("a.tif"), {}, 8)); };
  EXPECT_EQ(lost(), "other attributes") << "nobody knows their names";
  report.others = {"PageName"};
  EXPECT_EQ(lost(), "attribute PageName");
  report.others.emplace_back("HostComputer");
  EXPECT_EQ(lost(), "attributes PageName, HostComputer");
  report.lacking["tiff"].keptOthers = {"HostComputer"};
  EXPECT_EQ(lost(), "attribute PageName");
  // The place of another file.
  const auto beside = LossesBesideOf(report, OutputFormatOf("a.tif"), {}, SampleType::Unsigned8, PixelLayout::Rgb, 8);
  EXPECT_EQ(ListOf(beside), "attributes PageName, HostComputer");
  report.lacking["tiff"].keptOthers = report.others;
  EXPECT_EQ(lost(), "");
  for (int i = 0; i < 21; ++i)
    report.others.push_back("x" + std::to_string(i));
  EXPECT_TRUE(lost().starts_with("attributes x0, x1, ") && lost().ends_with(", x19 and 1 more")) << lost();
}

TEST_F(PictureLosses, FurtherStringsOfATextAreTold) {
  using namespace std::string_literals;
  const auto lost = [](const std::filesystem::path& path, const char* to) {
    return ListOf(LossesOf(ReportPicture(path), OutputFormatOf(to), {}, 8));
  };
  TiffBytes file(2, 1, 8, 3, "abcdef");
  const auto tiff =
      folder_.Write("a.tif", file.Text(270, "A fox\0running"s).Text(315, "me"s).Text(33432, "she\0he"s).File());
  const std::string texts = "further strings of the texts ImageDescription, Copyright";
  EXPECT_EQ(lost(tiff, "o.png"), texts);
  EXPECT_TRUE(lost(tiff, "o.jpg").starts_with(texts)) << lost(tiff, "o.jpg");
  EXPECT_TRUE(lost(tiff, "o.bmp").starts_with("text")) << lost(tiff, "o.bmp");
#ifdef _WIN32
  EXPECT_EQ(lost(tiff, "o.tif").find("strings"), std::string::npos) << "the tag passes as it is";
#else
  EXPECT_EQ(lost(tiff, "o.tif"), texts);
#endif
  // Exif data pass as they are to some files.
  const std::string exif = ExifBytes{.description = "a\0b"s}.Build();
  const std::string plain = Bytes(std::filesystem::path(VBLUR_PICTURES_FOLDER) / "rgb.jpg");
  const auto jpeg = folder_.Write("a.jpg", plain.substr(0, 20) + ExifSegment(exif) + plain.substr(20));
  for (const char* to : {"o.png", "o.jpg"})
    EXPECT_EQ(lost(jpeg, to).find("strings"), std::string::npos) << lost(jpeg, to);
  EXPECT_NE(lost(jpeg, "o.tif").find("further strings of the text ImageDescription"), std::string::npos)
      << lost(jpeg, "o.tif");
}

TEST_F(PictureLosses, AnOrientationThatIsNoneIsToldAndNotWritten) {
  const std::string plain = Bytes(std::filesystem::path(VBLUR_PICTURES_FOLDER) / "rgb.jpg");
  const auto written = [&](const std::filesystem::path& source, const std::string& name) {
    const ReadPicture read = PictureReader().ReadColour(source, 8, image_);
    const auto path = folder_.path() / name;
    PictureWriter().Write(path, image_, read.metadata.get(), true);
    return ReportPicture(path);
  };
  for (const std::uint32_t orientation : {0u, 6u, 9u}) {
    const std::string block = "II*" + std::string("\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0", 15) +
                              std::string{static_cast<char>(orientation), '\0', '\0', '\0'} + std::string(4, '\0');
    const auto jpeg = folder_.Write("in.jpg", plain.substr(0, 20) + ExifSegment(block) + plain.substr(20));
    const auto tiff = folder_.Write("in.tif", TiffBytes(2, 1, 8, 3, "abcdef").Short(274, {orientation}).File());
    const bool isOne = orientation == 6;
    std::vector<std::string> told;
    if (!isOne) told.push_back("orientation " + std::to_string(orientation) + " (none of 1 to 8)");
    for (const auto& source : {jpeg, tiff}) {
      EXPECT_EQ(ReadPictureInfo(source).unread, told) << source;
      for (const char* name : {"out.png", "out.jpg", "out.tif"}) {
        const PictureReport report = written(source, name);
        EXPECT_EQ(report.info.unread, std::vector<std::string>()) << source << " " << name << " " << orientation;
        EXPECT_EQ(report.metadata.Has(MetadataGroup::Orientation), isOne) << source << " " << name;
      }
    }
  }
}

// A header of three hundred bytes may have thousands of channels: what it takes does not grow with their square, which
// would be minutes here.
TEST_F(PictureLosses, ManyChannelsAreToldInNoTime) {
  PictureReport report;
  report.info.all.resize(1'000'000);
  for (int channel = 3; channel < 1'000'000; ++channel)
    report.info.passing.push_back(channel);
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(LossesOf(report, OutputFormatOf("a.png"), {}, 8).size(), 1u);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

}  // namespace
}  // namespace vblur::host
