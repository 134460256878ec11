// Names in which Windows sees one file.
#include <gtest/gtest.h>

#include "tests/host/sequence/ReplacedInputsTest.h"
#include "tests/support/host/PlainFiles.h"

namespace vblur::host {
namespace {

TEST_F(ReplacedInputs, AreKnownByAnyName) {
  WritePng(folder_.path() / "In.png", FlatPicture<std::uint16_t>(3, 2, 3, 4000));
  const std::string lost = "it is read by this run and would lose last bits of uint16 samples";
  for (const std::string& name :
       {std::string("IN.PNG"), std::string(".\\in.png"), "\\\\?\\" + (folder_.path() / "iN.pnG").string()}) {
    const auto failure = CaughtFailure([&] { Render("In.png", name); });
    ASSERT_TRUE(failure) << name;
    EXPECT_NE(std::string(failure->what()).find(lost), std::string::npos) << failure->what();
  }
  options_.lossy = true;
  EXPECT_EQ(Render("In.png", "IN.PNG").done, 1);
  EXPECT_EQ(NamesIn(folder_.path()).size(), 1u);
}

// The system leaves such ends out: the output's format is that of its own name.
TEST_F(ReplacedInputs, AreReplacedWhereTheirNameEndsInADotOrABlank) {
  for (const char* name : {"in.png.", "in.png ", "in.png. ."}) {
    WritePng(folder_.path() / "in.png", FlatPicture<std::uint8_t>(3, 2, 3, 90));
    EXPECT_EQ(Render(name, "in.png").done, 1) << name;
    WritePng(folder_.path() / "in.png", FlatPicture<std::uint16_t>(3, 2, 3, 4000));
    const auto failure = CaughtFailure([&] { Render(name, "in.png"); });
    ASSERT_TRUE(failure) << name;
    EXPECT_NE(std::string(failure->what()).find("would lose last bits of uint16"), std::string::npos)
        << failure->what();
  }
  EXPECT_EQ(NamesIn(folder_.path()).size(), 1u);
}

TEST_F(ReplacedInputs, OfOtherFramesAreKnownInAnyCase) {
  for (const char* name : {"in.1.png", "in.2.png"})
    WritePng(folder_.path() / name, FlatPicture<std::uint8_t>(3, 2, 3, 90));
  job_.frames = FrameRange{1, 2, 1};
  job_.output.renumber = 2;
  EXPECT_EQ(UsageFailureOf([&] { Render("in.%d.png", "IN.%d.PNG"); }),
            "output: \"IN.2.PNG\" of frame 1 is the picture that frame 2 reads as input, expected another file");
}

// A name of a drive's current folder is not one of the job's folder.
TEST_F(ReplacedInputs, AnOutputOnADriveWithoutAFolderIsRefused) {
  WritePng(folder_.path() / "in.png", FlatPicture<std::uint8_t>(3, 2, 3, 90));
  const std::string name = folder_.path().root_name().string() + "out.png";
  const auto failure = CaughtFailure([&] { Render("in.png", name); });
  ASSERT_TRUE(failure);
  EXPECT_EQ(std::string(failure->what()).find(name + ": cannot write: it lies in whatever folder"), 0u)
      << failure->what();
}

}  // namespace
}  // namespace vblur::host
