// Pictures that a run reads and replaces.
#include <gtest/gtest.h>

#include "tests/host/sequence/ReplacedInputsTest.h"
#include "tests/support/host/PlainFiles.h"

namespace vblur::host {
namespace {

const PlainPicture<std::uint8_t> kBytes = FlatPicture<std::uint8_t>(3, 2, 3, 16);
const PlainPicture<std::uint16_t> kWords = FlatPicture<std::uint16_t>(3, 2, 3, 4000);

TEST_F(ReplacedInputs, KeepTheirPages) {
  WriteTiff(folder_.path() / "in.tif", std::vector(3, kBytes));
  ExpectKept("in.tif", "2 further pictures");
  if (kMakesLinks) {
    std::filesystem::create_symlink("in.tif", folder_.path() / "link.tif");
    EXPECT_TRUE(CaughtFailure([&] { Render("in.tif", "link.tif"); }));
  }
  EXPECT_EQ(Render("in.tif", "other.tif").done, 1);
  options_.lossy = true;
  EXPECT_EQ(Render("in.tif", "in.tif").done, 1);
  EXPECT_EQ(ReadPictureInfo(folder_.path() / "in.tif").pictures, 1);
}

TEST_F(ReplacedInputs, KeepTheirTypeAndDepth) {
  WriteTiff(folder_.path() / "in.tif", kWords);
  job_.output.storage.type = SampleType::Unsigned8;
  ExpectKept("in.tif", "last bits of uint16 samples (uint8 are written)");
  job_.output.storage.type.reset();
  job_.depth = 8;
  ExpectKept("in.tif", "last bits of uint16 samples (8 bits are rendered)");
  job_.depth.reset();
  ExpectKept("in.tif", "last bits of uint16 samples (steps of 1/16384 are rendered)");
}

TEST_F(ReplacedInputs, KeepTheirFrames) {
  using namespace std::string_literals;
  WritePng(folder_.path() / "still.png", kBytes);
  WritePng(folder_.path() / "in.png", kBytes, PngChunk("acTL", "\0\0\0\x02\0\0\0\0"s));
  ExpectKept("in.png", "2 further pictures");
  EXPECT_EQ(Render("still.png", "still.png").done, 1);
}

TEST_F(ReplacedInputs, KeepTheirInks) {
  constexpr std::uint32_t kInks = 5;
  WriteTiff(folder_.path() / "in.tif", std::vector{FlatPicture<std::uint8_t>(3, 2, 4, 90)}, kInks);
  ExpectKept("in.tif", "four inks (red, green and blue are written)");
  options_.lossy = true;
  EXPECT_EQ(Render("in.tif", "in.tif").done, 1);
  options_.lossy = false;
  EXPECT_EQ(Render("in.tif", "in.tif").done, 1);
}

TEST_F(ReplacedInputs, KeepWhatTheJobLeavesOut) {
  WriteTiff(folder_.path() / "in.tif", kBytes);
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

// Of these the output, which is made like the first input, holds even less.
TEST_F(ReplacedInputs, KeepAMaskAndASecondClip) {
  const auto expectKept = [&](const std::string& name, const std::string& lost) {
    const auto failure = CaughtFailure([&] { Render("in.tif", name); });
    ASSERT_TRUE(failure) << lost;
    EXPECT_EQ(failure->what(),
              (folder_.path() / name).string() + ": cannot write: it is read by this run and would lose " + lost);
  };
  WriteTiff(folder_.path() / "in.tif", kBytes);
  WriteTiff(folder_.path() / "other.tif", FlatPicture<std::uint16_t>(5, 2, 4, 9));
  job_.mask.emplace().file = "other.tif";
  const std::string lost = "alpha, last bits of uint16 samples (uint8 are written), pixels beyond the output's size";
  expectKept("other.tif", lost);
  job_.input2.emplace().file = "other.tif";
  job_.mask.reset();
  expectKept("other.tif", lost);
  WritePng(folder_.path() / "other.png", kBytes);
  job_.input2->file = "other.png";
  EXPECT_EQ(Render("in.tif", "other.png").done, 1);
  WriteTiff(folder_.path() / "grey.tif", FlatPicture<std::uint8_t>(3, 2, 1, 9));
  const auto failure = CaughtFailure([&] { Render("grey.tif", "other.png"); });
  ASSERT_TRUE(failure);
  EXPECT_NE(std::string(failure->what()).find("would lose colours"), std::string::npos) << failure->what();
}

}  // namespace
}  // namespace vblur::host
