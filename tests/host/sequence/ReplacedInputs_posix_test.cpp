// Pictures of types, channels and metadata that only some formats have, which a run reads and replaces.
#include <algorithm>

#include <gtest/gtest.h>

#include "tests/host/sequence/ReplacedInputsTest.h"
#include "tests/support/host/PlainFiles.h"
#include "tests/support/host/TiffBytes.h"
#include "tests/support/host/WindowedPictures.h"

namespace vblur::host {
namespace {

TEST_F(ReplacedInputs, KeepTypesThatNothingElseHas) {
  for (const char* type : {"double", "int16"}) {
    WriteRaw(folder_.path() / "in.tif", "tiff", OIIO::ImageSpec(3, 2, 3, OIIO::TypeDesc(type)),
             std::vector<std::uint16_t>(18, 4000));
    ExpectKept("in.tif", "last bits of " + std::string(type) + " samples (" + (*type == 'd' ? "float" : "uint16") +
                             " are written)");
  }
  for (const int bits : {8, 10, 12}) {
    OIIO::ImageSpec spec(3, 2, 3, OIIO::TypeDesc::UINT16);
    spec.attribute("oiio:BitsPerSample", bits);
    if (bits == 8) spec.set_format(OIIO::TypeDesc::UINT8);
    WriteRaw(folder_.path() / "in.dpx", "dpx", spec, std::vector<std::uint16_t>(18, 4000));
    options_.lossy = true;
    EXPECT_EQ(Render("in.dpx", "in.dpx").done, 1);
    options_.lossy = false;
    EXPECT_EQ(Render("in.dpx", "in.dpx").done, 1) << bits;
  }
}

TEST_F(ReplacedInputs, KeepWholeNumbersThatNoFloatHolds) {
  WriteRaw(folder_.path() / "in.exr", "openexr", OIIO::ImageSpec(3, 2, 3, OIIO::TypeDesc::UINT32),
           std::vector<float>(18, 0.5f));
  ExpectKept("in.exr", "last bits of uint32 samples (float are written)");
}

TEST_F(ReplacedInputs, KeepTheirHalvesBelowTheStepsThatAreRendered) {
  const std::vector<float> samples(18, 0.5f);
  job_.depth = 16;
  WriteRaw(folder_.path() / "in.exr", "openexr", OIIO::ImageSpec(3, 2, 3, OIIO::TypeDesc::HALF), samples);
  ExpectKept("in.exr", "last bits of half samples below 1/16 (steps of 1/16384 are rendered)");
  OIIO::ImageSpec mixed(3, 2, 3, OIIO::TypeDesc::FLOAT);
  mixed.channelformats = {OIIO::TypeDesc::HALF, OIIO::TypeDesc::HALF, OIIO::TypeDesc::FLOAT};
  WriteRaw(folder_.path() / "in.exr", "openexr", mixed, samples);
  ExpectKept("in.exr",
             "last bits of half samples below 1/16 (steps of 1/16384 are rendered), last bits of float samples (steps "
             "of 1/16384 are rendered)");
}

TEST_F(ReplacedInputs, KeepCompressionsThatAreNotWritten) {
  OIIO::ImageSpec spec(32, 16, 3, OIIO::TypeDesc::UINT8);
  spec.attribute("compression", "jpeg");
  const auto write = [&] {
    WriteRaw(folder_.path() / "in.tif", "tiff", spec, std::vector<std::uint8_t>(32 * 16 * 3, 90));
  };
  write();
  ExpectKept("in.tif", "compression jpeg (zip is written)");
  options_.lossy = true;
  EXPECT_EQ(Render("in.tif", "in.tif").done, 1);
  options_.lossy = false;
  EXPECT_EQ(ReportPicture(folder_.path() / "in.tif").compression, "zip");
  // One that the picture library has no name for; the pixels are not decoded.
  folder_.Write("number.tif", TiffBytes(3, 1, 8, 1, "xyz").Short(259, {50000}).File());
  EXPECT_EQ(ListOf(LossesOf(ReportPicture(folder_.path() / "number.tif"), OutputFormatOf("a.tif"), {}, 8)),
            "compression number 50000 (zip is written)");
  // None of it where the user asks for another.
  write();
  job_.output.storage.compression = "lzw";
  EXPECT_EQ(Render("in.tif", "in.tif").done, 1);
}

TEST_F(ReplacedInputs, KeepTagsThatNobodyReads) {
  const TiffBytes file = TiffBytes(3, 1, 8, 1, "xyz").Text(285, "page").Text(65000, "own").Text(270, "text");
  folder_.Write("in.tif", file.File());
  ExpectKept("in.tif", "TIFF tags 285, 65000");
  options_.lossy = true;
  EXPECT_EQ(Render("in.tif", "in.tif").done, 1);
  options_.lossy = false;
  EXPECT_EQ(Render("in.tif", "in.tif").done, 1);
}

TEST_F(ReplacedInputs, KeepTheirTilesAndSmallerCopies) {
  OIIO::ImageSpec spec(32, 16, 3, OIIO::TypeDesc::UINT8);
  spec.tile_width = spec.tile_height = 16;
  WriteRaw(folder_.path() / "in.tif", "tiff", spec, std::vector<std::uint8_t>(32 * 16 * 3, 90));
  ExpectKept("in.tif", "tiles of 16 x 16 pixels");
  job_.depth = 16;
  spec.set_format(OIIO::TypeDesc::HALF);
  spec.attribute("textureformat", "Plain Texture");
  spec.attribute("openexr:levelmode", 1);
  const std::string file = (folder_.path() / "in.exr").string();
  const std::vector<float> samples(32 * 16 * 3, 0.5f);
  auto writer = OIIO::ImageOutput::create("openexr");
  for (int level = 0; level < 6; ++level) {
    ASSERT_TRUE(writer->open(file, spec, level == 0 ? OIIO::ImageOutput::Create : OIIO::ImageOutput::AppendMIPLevel));
    ASSERT_TRUE(writer->write_image(OIIO::TypeDesc::FLOAT, samples.data()));
    spec.width = spec.full_width = std::max(1, spec.width / 2);
    spec.height = spec.full_height = std::max(1, spec.height / 2);
  }
  // Closed, it waits for further levels.
  writer.reset();
  ExpectKept("in.exr",
             "5 smaller copies (mip levels), tiles of 16 x 16 pixels, last bits of half samples below 1/16 (steps of "
             "1/16384 are "
             "rendered)");
  options_.lossy = true;
  EXPECT_EQ(Render("in.exr", "in.exr").done, 1);
  EXPECT_EQ(ReadPictureInfo(folder_.path() / "in.exr").levels, 1);
}

// A text of any name stays one in the same format.
TEST_F(ReplacedInputs, LoseNoTextThatTheirFormatKeeps) {
  OIIO::ImageSpec spec(3, 2, 3, OIIO::TypeDesc::UINT8);
  spec.attribute("Exif:ImageHistory", "scanned");
  spec.attribute("Own words", "a text");
  WriteRaw(folder_.path() / "in.png", "png", spec, std::vector<std::uint8_t>(18, 9));
  EXPECT_EQ(Render("in.png", "in.png").done, 1);
  const auto report = ReportPicture(folder_.path() / "in.png");
  for (const char* text : {"Exif:ImageHistory", "Own words"})
    EXPECT_TRUE(std::ranges::any_of(report.attributes, [&](const auto& each) { return each.first == text; })) << text;
  EXPECT_EQ(ListOf(LossesOf(report, OutputFormatOf("a.tga"), {}, 8)), "Exif data, attribute Own words");
}

TEST_F(ReplacedInputs, KeepADamagedProfile) {
  OIIO::ImageSpec spec(3, 2, 3, OIIO::TypeDesc::UINT8);
  const auto profile = MakeProfile("CMYK");
  spec.attribute("ICCProfile", OIIO::TypeDesc(OIIO::TypeDesc::UINT8, static_cast<int>(profile.size())), profile.data());
  WriteRaw(folder_.path() / "in.tif", "tiff", spec, std::vector<std::uint8_t>(18, 9));
  ExpectKept("in.tif", "colour profile (damaged, or for other colours)");
}

TEST_F(ReplacedInputs, AreReplacedWhereFloatsHoldThem) {
  for (const OIIO::TypeDesc type : {OIIO::TypeDesc::HALF, OIIO::TypeDesc::FLOAT}) {
    WriteRaw(folder_.path() / "in.exr", "openexr", OIIO::ImageSpec(3, 2, 3, type), std::vector<float>(18, 0.001f));
    EXPECT_EQ(Render("in.exr", "in.exr").done, 1);
  }
}

TEST_F(ReplacedInputs, KeepWhatFloatsDoNotCarry) {
  WriteRaw(folder_.path() / "in.exr", "openexr", OIIO::ImageSpec(3, 2, 3, OIIO::TypeDesc::FLOAT),
           std::vector<float>(18, -1e6f));
  const std::string before = Bytes(folder_.path() / "in.exr");
  EXPECT_EQ(Render("in.exr", "in.exr").failed, 1);
  EXPECT_EQ(seen_.failure, (folder_.path() / "in.exr").string() +
                               ": cannot write: it is read by this run and would lose what cannot be read: 18 "
                               "components from -1e+06 to -1e+06 clipped to -65504 to 65504, which 32 bits carry");
  EXPECT_EQ(Bytes(folder_.path() / "in.exr"), before);
}

TEST_F(ReplacedInputs, KeepTheirHighlights) {
  job_.depth = 16;
  WriteWindowed(folder_.path() / "in.exr", {0, 0, 3, 2}, {0, 0, 3, 2}, {"R", "G", "B"}, 7.0f);
  ExpectKept("in.exr", "last bits of float samples (steps of 1/16384 are rendered)");
  options_.lossy = true;
  EXPECT_EQ(Render("in.exr", "in.exr").done, 1);
}

TEST_F(ReplacedInputs, KeepTheirChannelsInTheirOwnFormat) {
  WriteWindowed(folder_.path() / "in.exr", {0, 0, 3, 2}, {0, 0, 3, 2}, {"R", "G", "B", "Z"}, 0.5f);
  options_.lossy = true;
  EXPECT_EQ(Render("in.exr", "in.exr").done, 1);
  EXPECT_EQ(ReadPictureInfo(folder_.path() / "in.exr").channels, 4);
}

TEST_F(ReplacedInputs, ReportsTellWhatOtherFormatsLose) {
  WriteWindowed(folder_.path() / "in.exr", {-1, 0, 3, 2}, {0, 0, 3, 2}, {"R", "G", "B", "A", "Z"}, 0.5f);
  const auto report = ReportPicture(folder_.path() / "in.exr");
  EXPECT_EQ(ListOf(LossesOf(report, OutputFormatOf("a.jpg"), {}, 16)),
            "channel Z, alpha, last bits of float samples (uint8 are written), pixels beyond the frame");
  EXPECT_EQ(ListOf(LossesOf(report, OutputFormatOf("a.exr"), {}, 16)),
            "last bits of float samples (steps of 1/16384 are rendered)");
  EXPECT_EQ(ListOf(LossesOf(report, OutputFormatOf("a.exr"), {}, 32)), "");
}

// The output's format is that of its own name.
TEST_F(ReplacedInputs, AreReplacedWhereALinkOfAnotherNameLeadsToThem) {
  for (const char* name : {"link", "link.jpg"}) {
    WritePng(folder_.path() / "in.png", FlatPicture<std::uint8_t>(3, 2, 3, 90));
    std::filesystem::create_symlink("in.png", folder_.path() / name);
    EXPECT_EQ(Render(name, "in.png").done, 1) << name;
    WritePng(folder_.path() / "in.png", FlatPicture<std::uint16_t>(3, 2, 3, 4000));
    const auto failure = CaughtFailure([&] { Render(name, "in.png"); });
    ASSERT_TRUE(failure) << name;
    EXPECT_NE(std::string(failure->what()).find("would lose last bits of uint16 samples (steps of"), std::string::npos)
        << failure->what();
  }
}

TEST_F(ReplacedInputs, KeepTheTextOfAMask) {
  WriteTiff(folder_.path() / "in.tif", FlatPicture<std::uint8_t>(3, 2, 3, 16));
  OIIO::ImageSpec spec(3, 2, 3, OIIO::TypeDesc::UINT8);
  spec.attribute("Artist", "somebody");
  WriteRaw(folder_.path() / "other.tif", "tiff", spec, std::vector<std::uint8_t>(18, 9));
  job_.mask.emplace().file = "other.tif";
  const auto failure = CaughtFailure([&] { Render("in.tif", "other.tif"); });
  ASSERT_TRUE(failure);
  EXPECT_NE(std::string(failure->what()).find("would lose text"), std::string::npos) << failure->what();
}

}  // namespace
}  // namespace vblur::host
