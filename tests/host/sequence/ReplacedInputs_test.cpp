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

  void Pages(const std::string& name, int pages) {
    const std::vector<OIIO::ImageSpec> specs(static_cast<std::size_t>(pages),
                                             OIIO::ImageSpec(3, 2, 3, OIIO::TypeDesc::UINT16));
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
  Pages("in.tif", 1);
  job_.output.storage.type = SampleType::Unsigned8;
  ExpectKept("in.tif", "uint16 samples (uint8 are written)");
  job_.output.storage.type.reset();
  job_.depth = 8;
  ExpectKept("in.tif", "uint16 samples (8 bits are rendered)");
  job_.depth.reset();
  EXPECT_EQ(Render("in.tif", "in.tif").done, 1);
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
  const std::string before = Bytes(folder_.path() / "in.exr");
  EXPECT_EQ(Render("in.exr", "in.exr").failed, 1);
  EXPECT_NE(seen_.failure.find("would lose what cannot be read: "), std::string::npos) << seen_.failure;
  EXPECT_EQ(Bytes(folder_.path() / "in.exr"), before);
  options_.lossy = true;
  EXPECT_EQ(Render("in.exr", "in.exr").done, 1);
}

TEST_F(ReplacedInputs, KeepTheirChannelsInTheirOwnFormat) {
  WriteWindowed(folder_.path() / "in.exr", {0, 0, 3, 2}, {0, 0, 3, 2}, {"R", "G", "B", "Z"}, 0.5f);
  EXPECT_EQ(Render("in.exr", "in.exr").done, 1);
  EXPECT_EQ(ReadPictureInfo(folder_.path() / "in.exr").channels, 4);
}

TEST_F(ReplacedInputs, ReportsTellWhatOtherFormatsLose) {
  WriteWindowed(folder_.path() / "in.exr", {-1, 0, 3, 2}, {0, 0, 3, 2}, {"R", "G", "B", "A", "Z"}, 0.5f);
  const auto report = ReportPicture(folder_.path() / "in.exr");
  EXPECT_EQ(
      LossesOf(report, OutputFormatOf("a.jpg"), {}, 16),
      (std::vector<std::string>{"channel Z", "alpha", "float samples (uint8 are written)", "pixels beyond the frame"}));
  EXPECT_EQ(LossesOf(report, OutputFormatOf("a.exr"), {}, 16), std::vector<std::string>{});
}

}  // namespace
}  // namespace vblur::host
