// Pictures that a run reads and replaces.
#include <gtest/gtest.h>

#include "host/files/PictureReport.h"
#include "host/sequence/SequenceRenderer.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"
#include "tests/support/host/TestEffect.h"
#include "tests/support/host/WindowedPictures.h"

namespace vblur::host {
namespace {

class Messages : public RenderObserver {
 public:
  void OnStart(std::int64_t, std::int32_t) override {}
  void OnWarning(std::int32_t, const std::string&) override {}
  void OnFrame(const FrameResult& result) override { failure = result.message; }

  std::string failure;
};

class ReplacedInputs : public testing::Test {
 protected:
  ReplacedInputs() { options_.overwrite = true; }

  void Pages(const std::string& name, int pages, OIIO::TypeDesc type = OIIO::TypeDesc::UINT8) {
    const std::vector<OIIO::ImageSpec> specs(static_cast<std::size_t>(pages), OIIO::ImageSpec(3, 2, 3, type));
    const std::vector<std::uint16_t> samples(18, 4000);
    auto writer = OIIO::ImageOutput::create("tiff");
    const std::string file = (folder_.path() / name).string();
    for (int page = 0; page < pages; ++page) {
      ASSERT_TRUE(
          writer->open(file, specs[0], page == 0 ? OIIO::ImageOutput::Create : OIIO::ImageOutput::AppendSubimage));
      ASSERT_TRUE(writer->write_image(OIIO::TypeDesc::UINT16, samples.data()));
    }
    ASSERT_TRUE(writer->close());
  }

  RenderSummary Render(const std::string& input, const std::string& output) {
    job_.folder = folder_.path();
    job_.input.emplace().file = input;
    job_.output.file = output;
    const auto make = [&] { return ComPtr<TestEffect>::Own(new TestEffect(log_)).As<IDSImageEffect>(); };
    return RenderSequence(job_, make, options_, context_, seen_);
  }

  // The file and why it is kept.
  void ExpectKept(const std::string& name, const std::string& lost) {
    const std::string before = Bytes(folder_.path() / name);
    const auto failure = CaughtFailure([&] { Render(name, name); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->what(),
              (folder_.path() / name).string() + ": cannot write: it is read by this run and would lose " + lost);
    EXPECT_EQ(failure->Kind(), FailureKind::HoldsLess);
    EXPECT_EQ(Bytes(folder_.path() / name), before);
  }

  ScratchFolder folder_;
  Job job_;
  RenderOptions options_;
  ExecuteContext context_;
  Messages seen_;
  std::vector<RenderedFrame> log_;
};

TEST_F(ReplacedInputs, KeepTheirPages) {
  Pages("in.tif", 3);
  ExpectKept("in.tif", "2 further pictures");
  std::filesystem::create_symlink("in.tif", folder_.path() / "link.tif");
  EXPECT_TRUE(CaughtFailure([&] { Render("in.tif", "link.tif"); }));
  EXPECT_EQ(Render("in.tif", "other.tif").done, 1);
  options_.lossy = true;
  EXPECT_EQ(Render("in.tif", "in.tif").done, 1);
  EXPECT_EQ(ReadPictureInfo(folder_.path() / "in.tif").pictures, 1);
}

TEST_F(ReplacedInputs, KeepTheirTypeAndDepth) {
  Pages("in.tif", 1, OIIO::TypeDesc::UINT16);
  job_.output.storage.type = SampleType::Unsigned8;
  ExpectKept("in.tif", "last bits of uint16 samples (uint8 are written)");
  job_.output.storage.type.reset();
  job_.depth = 8;
  ExpectKept("in.tif", "last bits of uint16 samples (8 bits are rendered)");
  job_.depth.reset();
  ExpectKept("in.tif", "last bits of uint16 samples (steps of 1/16384 are rendered)");
  for (const char* type : {"double", "int16"}) {
    Pages("in.tif", 1, OIIO::TypeDesc(type));
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
  WriteRaw(folder_.path() / "in.exr", "openexr", OIIO::ImageSpec(3, 2, 3, OIIO::TypeDesc::HALF), samples);
  ExpectKept("in.exr", "last bits of half samples below 1/16 (steps of 1/16384 are rendered)");
  OIIO::ImageSpec mixed(3, 2, 3, OIIO::TypeDesc::FLOAT);
  mixed.channelformats = {OIIO::TypeDesc::HALF, OIIO::TypeDesc::HALF, OIIO::TypeDesc::FLOAT};
  WriteRaw(folder_.path() / "in.exr", "openexr", mixed, samples);
  ExpectKept("in.exr",
             "last bits of half samples below 1/16 (steps of 1/16384 are rendered), last bits of float samples (steps "
             "of 1/16384 are rendered)");
}

TEST_F(ReplacedInputs, KeepTheirFrames) {
  using namespace std::string_literals;
  OIIO::ImageSpec spec(3, 2, 3, OIIO::TypeDesc::UINT8);
  WriteRaw(folder_.path() / "still.png", "png", spec, std::vector<std::uint8_t>(18, 9));
  std::string bytes = Bytes(folder_.path() / "still.png");
  constexpr std::size_t kHeader = 8 + 25;
  bytes.insert(kHeader,
               "\0\0\0\x08"
               "acTL\0\0\0\x02\0\0\0\0\xf3\x8d\x93\x70"s);
  folder_.Write("in.png", bytes);
  ExpectKept("in.png", "2 further pictures");
  EXPECT_EQ(Render("still.png", "still.png").done, 1);
}

TEST_F(ReplacedInputs, KeepTheirInks) {
  OIIO::ImageSpec spec(3, 2, 3, OIIO::TypeDesc::UINT8);
  spec.attribute("tiff:ColorSpace", "CMYK");
  WriteRaw(folder_.path() / "in.tif", "tiff", spec, std::vector<std::uint8_t>(18, 90));
  ExpectKept("in.tif", "four inks (red, green and blue are written)");
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
  EXPECT_EQ(ListOf(LossesOf(report, OutputFormatOf("a.tga"), {}, 8)), "Exif data, other attributes");
}

TEST_F(ReplacedInputs, KeepADamagedProfile) {
  OIIO::ImageSpec spec(3, 2, 3, OIIO::TypeDesc::UINT8);
  const auto profile = MakeProfile("CMYK");
  spec.attribute("ICCProfile", OIIO::TypeDesc(OIIO::TypeDesc::UINT8, static_cast<int>(profile.size())), profile.data());
  WriteRaw(folder_.path() / "in.tif", "tiff", spec, std::vector<std::uint8_t>(18, 9));
  ExpectKept("in.tif", "colour profile (damaged, or for other colours)");
}

TEST_F(ReplacedInputs, KeepWhatTheJobLeavesOut) {
  Pages("in.tif", 1);
  job_.field = FieldChoice::Second;
  ExpectKept("in.tif", "the rows of the other field");
  job_.field = FieldChoice::Both;
  EXPECT_EQ(Render("in.tif", "in.tif").done, 1);
  job_.field = FieldChoice::Frame;
  job_.output.width = 2;
  ExpectKept("in.tif", "pixels beyond the output's size");
  job_.output.width.reset();
  job_.output.origin = {1, 0};
  ExpectKept("in.tif", "pixels beside the output");
  job_.output.origin = {0, 0};
  job_.roi = Region{0, 0, 1, 1};
  job_.outside = OutsideChoice::Clear;
  ExpectKept("in.tif", "what lies outside the region");
  job_.outside.reset();
  EXPECT_EQ(Render("in.tif", "in.tif").done, 1);
}

TEST_F(ReplacedInputs, KeepTheirHighlights) {
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

// Of these the output, which is made like the first input, holds even less.
TEST_F(ReplacedInputs, KeepAMaskAndASecondClip) {
  const auto expectKept = [&](const std::string& name, const std::string& lost) {
    const auto failure = CaughtFailure([&] { Render("in.tif", name); });
    ASSERT_TRUE(failure) << lost;
    EXPECT_EQ(failure->what(),
              (folder_.path() / name).string() + ": cannot write: it is read by this run and would lose " + lost);
  };
  Pages("in.tif", 1);
  OIIO::ImageSpec spec(5, 2, 4, OIIO::TypeDesc::UINT16);
  spec.attribute("Artist", "somebody");
  WriteRaw(folder_.path() / "other.tif", "tiff", spec, std::vector<std::uint16_t>(40, 9));
  job_.mask.emplace().file = "other.tif";
  const std::string lost =
      "alpha, last bits of uint16 samples (uint8 are written), text, pixels beyond the output's size";
  expectKept("other.tif", lost);
  job_.input2.emplace().file = "other.tif";
  job_.mask.reset();
  expectKept("other.tif", lost);
  OIIO::ImageSpec plain(3, 2, 3, OIIO::TypeDesc::UINT8);
  WriteRaw(folder_.path() / "other.bmp", "bmp", plain, std::vector<std::uint8_t>(18, 9));
  job_.input2->file = "other.bmp";
  EXPECT_EQ(Render("in.tif", "other.bmp").done, 1);
  WriteRaw(folder_.path() / "grey.tif", "tiff", OIIO::ImageSpec(3, 2, 1, OIIO::TypeDesc::UINT8),
           std::vector<std::uint8_t>(6, 9));
  const auto failure = CaughtFailure([&] { Render("grey.tif", "other.bmp"); });
  ASSERT_TRUE(failure);
  EXPECT_NE(std::string(failure->what()).find("would lose colours"), std::string::npos) << failure->what();
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

}  // namespace
}  // namespace vblur::host
