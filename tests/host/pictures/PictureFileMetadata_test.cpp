#include "host/pictures/PictureFileMetadata.h"

#include <gtest/gtest.h>

#include "host/files/OutputFile.h"
#include "host/files/PictureReport.h"
#include "host/pictures/PictureFileOpen.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/RawPictures.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/TiffBytes.h"

namespace vblur::host {
namespace {

// The metadata of a file after it is read and written once.
class PictureFileMetadata : public testing::Test {
 protected:
  OIIO::ImageSpec PassOn(const std::string& from, const std::string& to) {
    HostImage image;
    const auto read = PictureReader().ReadColour(folder_.path() / from, 16, image);
    PictureWriter().Write(folder_.path() / to, image, read.metadata.get(), true);
    return OpenPictureFile(folder_.path() / to, {}).file->spec();
  }

  ScratchFolder folder_;
};

TEST_F(PictureFileMetadata, IsPassedOn) {
  OIIO::ImageSpec spec(2, 1, 4, OIIO::TypeDesc::HALF);
  spec.attribute("PixelAspectRatio", 2.0f);
  spec.attribute("XResolution", 300.0f);
  spec.attribute("YResolution", 300.0f);
  spec.attribute("ResolutionUnit", "in");
  const unsigned code[2] = {0x01020304, 0};
  spec.attribute("smpte:TimeCode", OIIO::TypeTimeCode, code);
  spec.attribute("compression", "rle");
  WriteRaw(folder_.path() / "in.exr", "openexr", spec, std::vector<float>(8, 0.5f));
  const auto exr = PassOn("in.exr", "out.exr");
  EXPECT_EQ(exr.get_float_attribute("PixelAspectRatio"), 2.0f);
  const auto* passed = exr.find_attribute("smpte:TimeCode");
  ASSERT_TRUE(passed);
  EXPECT_EQ(std::memcmp(passed->data(), code, sizeof code), 0);
  EXPECT_EQ(exr.get_string_attribute("compression"), "rle");
  const auto tiff = PassOn("in.exr", "out.tif");
  EXPECT_EQ(tiff.get_float_attribute("XResolution"), 300.0f);
  EXPECT_EQ(tiff.get_string_attribute("ResolutionUnit"), "in");
}

// The library's reader of JPEG files has it upside down.
TEST_F(PictureFileMetadata, TheAspectOfAJpegFileStays) {
  OIIO::ImageSpec spec(8, 8, 3, OIIO::TypeDesc::UINT8);
  WriteRaw(folder_.path() / "in.jpg", "jpeg", spec, std::vector<std::uint8_t>(192, 50));
  std::string jpeg = Bytes(folder_.path() / "in.jpg");
  ASSERT_EQ(jpeg.substr(6, 4), "JFIF");
  // No unit: 4 wide by 3 high.
  jpeg.replace(13, 5, std::string("\0\0\4\0\3", 5));
  folder_.Write("in.jpg", jpeg);
  for (const char* const to : {"out.png", "out.tif"}) {
    const OIIO::ImageSpec out = PassOn("in.jpg", to);
    EXPECT_EQ(out.get_float_attribute("XResolution") * 3.0f, out.get_float_attribute("YResolution") * 4.0f) << to;
    EXPECT_EQ(out.get_float_attribute("PixelAspectRatio"), 0.75f) << to;
  }
}

// A writer of IPTC data ends the program at one.
TEST_F(PictureFileMetadata, EmptyTextsAreLeftOut) {
  for (const char* const name : {"Artist", "Copyright", "ImageDescription", "IPTC:City"}) {
    LibraryMetadata metadata;
    metadata.info.format = "png";
    for (const std::string& empty : {std::string(), std::string("  "), std::string(3, '\0')}) {
      metadata.input.attribute(name, empty);
      OIIO::ImageSpec output;
      ApplyMetadata(metadata, PixelLayout::Rgb, output, OutputFormatOf("out.jpg"));
      EXPECT_TRUE(output.extra_attribs.empty()) << name;
    }
    metadata.input.attribute(name, " x");
    OIIO::ImageSpec output;
    ApplyMetadata(metadata, PixelLayout::Rgb, output, OutputFormatOf("out.jpg"));
    EXPECT_EQ(output.get_string_attribute(name), " x");
  }
}

// The writer of JPEG files ends the program at one.
TEST_F(PictureFileMetadata, TextsThatAreTooLongForAJpegAreLeftOutAndTold) {
  OIIO::ImageSpec spec(2, 1, 3, OIIO::TypeDesc::UINT8);
  spec.attribute("Artist", std::string(40000, 'a'));
  spec.attribute("ImageDescription", std::string(20001, 'b'));
  spec.attribute("Copyright", "somebody");
  WriteRaw(folder_.path() / "in.tif", "tiff", spec, std::vector<std::uint8_t>(6, 50));
  HostImage image;
  const auto read = PictureReader().ReadColour(folder_.path() / "in.tif", 8, image);
  const PictureReport report = ReportPicture(folder_.path() / "in.tif");
  const auto lost = [&](const char* to) { return ListOf(LossesOf(report, OutputFormatOf(to), {}, 8)); };
  EXPECT_EQ(lost("out.jpg"), "Artist (longer than files of this format hold)");
  EXPECT_EQ(lost("out.png"), "");
  PictureWriter writer;
  auto written = writer.WriteBeside(folder_.path() / "out.jpg", image, read.metadata.get(), {});
  EXPECT_EQ(written.Notes(), std::vector<std::string>{"output: lost: " + lost("out.jpg")});
  written.Commit();
  const OIIO::ImageSpec out = OpenPictureFile(folder_.path() / "out.jpg", {}).file->spec();
  EXPECT_EQ(out.find_attribute("Artist"), nullptr);
  EXPECT_EQ(out.get_string_attribute("ImageDescription"), std::string(20001, 'b'));
  EXPECT_EQ(out.get_string_attribute("Copyright"), "somebody");
  OIIO::ImageSpec texts;
  texts.attribute("a", std::string(10, 'a'));
  texts.attribute("b", std::string(20, 'b'));
  texts.attribute("c", 5);
  EXPECT_EQ(TakeLongTexts(texts, 30), std::vector<std::string>{});
  EXPECT_EQ(TakeLongTexts(texts, 29), std::vector<std::string>{"b"});
  EXPECT_EQ(TakeLongTexts(texts, 0), std::vector<std::string>{"a"});
}

// Though the host has no group for them.
TEST_F(PictureFileMetadata, TextsThatAreWrittenAreNotToldAsLost) {
  folder_.Write("in.tif", TiffBytes(2, 1, 8, 1, "xy").Text(269, "a document").Text(316, "a computer").File());
  const PictureReport report = ReportPicture(folder_.path() / "in.tif");
  const auto lost = [&](const char* to) { return ListOf(LossesOf(report, OutputFormatOf(to), {}, 8)); };
  for (const char* to : {"out.tif", "out.png"}) {
    EXPECT_EQ(lost(to), "") << to;
    const OIIO::ImageSpec out = PassOn("in.tif", to);
    EXPECT_EQ(out.get_string_attribute("DocumentName"), "a document") << to;
    EXPECT_EQ(out.get_string_attribute("HostComputer"), "a computer") << to;
  }
  EXPECT_EQ(lost("out.tga"), "attributes DocumentName, HostComputer");
  OIIO::ImageSpec spec(2, 1, 3, OIIO::TypeDesc::HALF);
  spec.attribute("  no name of a text", "but a text");
  spec.attribute("owner", "somebody");
  spec.attribute("count", 3);
  WriteRaw(folder_.path() / "in.exr", "openexr", spec, std::vector<std::uint16_t>(6, 0));
  EXPECT_EQ(ListOf(LossesOf(ReportPicture(folder_.path() / "in.exr"), OutputFormatOf("a.png"), {}, 8)),
            "last bits of half samples (uint16 are written), attributes   no name of a text, count");
}

// The library makes others of them.
TEST_F(PictureFileMetadata, FractionsOfExifDataStay) {
  for (const float value : {0.5f, 0.25f, 0.125f, 0.02f, 0.01f, 1.0f / 125, 0.0f, 1.0f, 2.8f, 50.0f}) {
    OIIO::ImageSpec spec(2, 1, 3, OIIO::TypeDesc::UINT8);
    spec.attribute("ExposureTime", value);
    spec.attribute("Exif:ExposureBiasValue", -value);
    WriteRaw(folder_.path() / "in.tif", "tiff", spec, std::vector<std::uint8_t>(6, 50));
    for (const char* name : {"out.jpg", "out.png"}) {
      const OIIO::ImageSpec out = PassOn("in.tif", name);
      EXPECT_FLOAT_EQ(out.get_float_attribute("ExposureTime", -1), value) << name;
      EXPECT_FLOAT_EQ(out.get_float_attribute("Exif:ExposureBiasValue", -1), -value) << name;
    }
  }
}

// Nor made up: outputs are the same from run to run.
TEST_F(PictureFileMetadata, ATimeIsPassedOnAndNotMadeUp) {
  OIIO::ImageSpec spec(2, 1, 3, OIIO::TypeDesc::UINT8);
  WriteRaw(folder_.path() / "without.png", "png", spec, std::vector<std::uint8_t>(6, 50));
  spec.attribute("DateTime", "2019:01:02 03:04:05");
  WriteRaw(folder_.path() / "with.png", "png", spec, std::vector<std::uint8_t>(6, 50));
  for (const char* name : {"out.tif", "out.exr", "out.jpg", "out.png", "out.dpx"}) {
    EXPECT_EQ(PassOn("without.png", name).find_attribute("DateTime"), nullptr) << name;
    EXPECT_EQ(Bytes(folder_.path() / name).find("capDate"), std::string::npos) << name;
    EXPECT_EQ(PassOn("with.png", name).get_string_attribute("DateTime"), "2019:01:02 03:04:05") << name;
  }
}

TEST_F(PictureFileMetadata, EveryCompressionOfAFormatIsPassedOnWithinIt) {
  OIIO::ImageSpec spec(2, 1, 4, OIIO::TypeDesc::HALF);
  for (const char* compression : {"none", "rle", "zip", "zips", "piz", "pxr24", "b44", "b44a", "dwaa", "dwab"}) {
    spec.attribute("compression", compression);
    WriteRaw(folder_.path() / "in.exr", "openexr", spec, std::vector<float>(8, 0.5f));
    EXPECT_EQ(PassOn("in.exr", "out.exr").get_string_attribute("compression"), compression);
  }
  spec.set_format(OIIO::TypeDesc::UINT8);
  for (const char* compression : {"none", "lzw", "zip", "packbits"}) {
    spec.attribute("compression", compression);
    WriteRaw(folder_.path() / "in.tif", "tiff", spec, std::vector<std::uint8_t>(8, 50));
    EXPECT_EQ(PassOn("in.tif", "out.tif").get_string_attribute("compression"), compression);
    EXPECT_EQ(PassOn("in.tif", "out.exr").get_string_attribute("compression"), "piz");
  }
}

TEST_F(PictureFileMetadata, WindowsOfAPictureArePassedOn) {
  OIIO::ImageSpec spec(4, 2, 4, OIIO::TypeDesc::FLOAT);
  spec.x = -1;
  spec.y = 3;
  spec.full_x = 0;
  spec.full_y = 0;
  spec.full_width = 16;
  spec.full_height = 9;
  WriteRaw(folder_.path() / "in.exr", "openexr", spec, std::vector<float>(32, 0.5f));
  const auto same = PassOn("in.exr", "out.exr");
  EXPECT_EQ(same.roi(), spec.roi());
  EXPECT_EQ(same.roi_full(), spec.roi_full());
  const auto other = PassOn("in.exr", "out.png");
  EXPECT_EQ(other.width, 16);
  EXPECT_EQ(other.height, 9);
}

TEST_F(PictureFileMetadata, AnOrientationStaysATag) {
  OIIO::ImageSpec spec(4, 2, 3, OIIO::TypeDesc::UINT8);
  spec.attribute("Orientation", 6);
  WriteRaw(folder_.path() / "in.jpg", "jpeg", spec, std::vector<std::uint8_t>(24, 100));
  for (const char* name : {"out.jpg", "out.tif", "out.exr", "out.tga", "out.dpx"}) {
    const auto out = PassOn("in.jpg", name);
    EXPECT_EQ(out.width, 4) << name;
    EXPECT_EQ(out.height, 2) << name;
  }
  EXPECT_EQ(PassOn("in.jpg", "out.jpg").get_int_attribute("Orientation"), 6);
  EXPECT_EQ(PassOn("in.jpg", "out.tif").get_int_attribute("Orientation"), 6);
}

// The output declares premultiplied colours as the source does; values never change.
TEST_F(PictureFileMetadata, TheKindOfAlphaIsPassedOnWithTheSameNumbers) {
  const std::vector<std::uint16_t> samples = {60000, 40000, 20000, 100, 1, 2, 3, 0};
  for (const bool unassociated : {false, true}) {
    OIIO::ImageSpec spec(2, 1, 4, OIIO::TypeDesc::UINT16);
    if (unassociated) spec.attribute("oiio:UnassociatedAlpha", 1);
    auto writer = OIIO::ImageOutput::create("tiff");
    ASSERT_TRUE(writer->open((folder_.path() / "in.tif").string(), spec));
    ASSERT_TRUE(writer->write_image(OIIO::TypeDesc::UINT16, samples.data()));
    ASSERT_TRUE(writer->close());
    const auto out = PassOn("in.tif", "out.tif");
    EXPECT_EQ(out.get_int_attribute("oiio:UnassociatedAlpha") != 0, unassociated);
    HostImage in;
    HostImage again;
    PictureReader().ReadColour(folder_.path() / "in.tif", 16, in);
    PictureReader().ReadColour(folder_.path() / "out.tif", 16, again);
    EXPECT_EQ(Component(in, 0), 15000);
    EXPECT_EQ(Components(again), Components(in));
  }
}

TEST_F(PictureFileMetadata, AProfileIsPassedOnToFilesOfItsColours) {
  for (const bool grey : {true, false}) {
    auto profile = MakeProfile(grey ? "GRAY" : "RGB ");
    OIIO::ImageSpec spec(1, 1, grey ? 1 : 3, OIIO::TypeDesc::UINT8);
    spec.attribute("ICCProfile", OIIO::TypeDesc(OIIO::TypeDesc::UINT8, static_cast<int>(profile.size())),
                   profile.data());
    WriteRaw(folder_.path() / "in.tif", "tiff", spec, std::vector<std::uint8_t>(3, 100));
    EXPECT_TRUE(PassOn("in.tif", "out.tif").find_attribute("ICCProfile"));
    // A format without grey.
    EXPECT_EQ(PassOn("in.tif", "out.webp").nchannels, 3);
    profile = MakeProfile(grey ? "RGB " : "CMYK");
    spec.attribute("ICCProfile", OIIO::TypeDesc(OIIO::TypeDesc::UINT8, static_cast<int>(profile.size())),
                   profile.data());
    WriteRaw(folder_.path() / "in.tif", "tiff", spec, std::vector<std::uint8_t>(3, 100));
    EXPECT_FALSE(PassOn("in.tif", "out.tif").find_attribute("ICCProfile"));
    // A damaged one, for which the PNG writer would refuse the picture.
    profile = MakeProfile(grey ? "GRAY" : "RGB ");
    profile[3] = 7;
    spec.attribute("ICCProfile", OIIO::TypeDesc(OIIO::TypeDesc::UINT8, static_cast<int>(profile.size())),
                   profile.data());
    WriteRaw(folder_.path() / "in.tif", "tiff", spec, std::vector<std::uint8_t>(3, 100));
    EXPECT_FALSE(PassOn("in.tif", "out.png").find_attribute("ICCProfile"));
  }
}

}  // namespace
}  // namespace vblur::host
