// The commands sheet and kernel: what they write and refuse.
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class SheetPrograms : public ProgramTest {
 protected:
  SheetPrograms() { MakePicture("in.png"); }
};

TEST_F(SheetPrograms, DrawsEverySheetAtBothDepths) {
  for (const std::string of : {"channels", "mix-back", "edges", "sizes", "ramps"}) {
    for (const std::string depth : {"8", "16", "32"}) {
      const auto result = Run({"sheet", "in.png", of + depth + ".png", "--of", of, "--depth", depth});
      EXPECT_EQ(result.exit, 0) << result.err;
      EXPECT_EQ(result.err, "");
      EXPECT_EQ(host::ReadPictureInfo(Path(of + depth + ".png")).samples, host::SampleKind::Unsigned8);
    }
  }
}

TEST_F(SheetPrograms, TakesASecondClipOfAnotherSize) {
  MakePicture("other.png", 77, 13);
  EXPECT_EQ(Run({"sheet", "in.png", "a.png", "--of", "ramps"}).exit, 0);
  EXPECT_EQ(Run({"sheet", "in.png", "b.png", "--of", "ramps", "--to", "other.png"}).exit, 0);
  const auto a = Pixels("a.png");
  const auto b = Pixels("b.png");
  ASSERT_EQ(a.size(), b.size());
  EXPECT_NE(a, b);
}

TEST_F(SheetPrograms, PropertiesChangeThePanels) {
  EXPECT_EQ(Run({"sheet", "in.png", "a.png", "--of", "channels", "--blur", "2"}).exit, 0);
  EXPECT_EQ(Run({"sheet", "in.png", "b.png", "--of", "channels", "--blur", "3"}).exit, 0);
  EXPECT_NE(Pixels("a.png"), Pixels("b.png"));
}

TEST_F(SheetPrograms, RefusesWhatDoesNotFit) {
  ExpectRefusal({"sheet", "in.png", "out.png"}, 2, "--of is required; see vblur sheet --help");
  ExpectRefusal({"sheet", "in.png", "out.png", "--of", "blurs"}, 2,
                "--of: expected channels, mix-back, edges, sizes or ramps, found \"blurs\"");
  ExpectRefusal({"sheet", "in.png", "out.png", "--of", "sizes", "--to", "in.png"}, 2,
                "--to: goes with --of ramps only");
  ExpectRefusal({"sheet", "in.png", "out.png", "--of", "channels", "--channels", "Red"}, 2,
                "Channels: cannot be set, a sheet of channels goes through its values");
  ExpectRefusal({"sheet", "in.png", "out.png", "--of", "sizes", "--depth", "12"}, 2,
                "--depth: expected 8, 16 or 32, found 12");
  ExpectRefusal({"sheet", "in.png", "out.png", "--of", "sizes", "--alpha", "no"}, 2,
                "--alpha: expected shown or ignored, found \"no\"");
  ExpectRefusal({"sheet", "none.png", "out.png", "--of", "sizes"}, 3, "none.png: cannot read: no such file");
  ExpectRefusal({"sheet", "in.png", "out.png", "--of", "ramps", "--to", "none.png"}, 3,
                "none.png: cannot read: no such file");
  ExpectRefusal({"sheet", "in.png", "no/out.png", "--of", "sizes"}, 4,
                "no/out.png: cannot write: the folder no does not exist");
}

TEST_F(SheetPrograms, OldFilesAreReplacedOnlyWithOverwrite) {
  MakePicture("other.png");
  const std::string before = host::Bytes(Path("in.png"));
  for (const auto& command :
       std::vector<std::vector<std::string>>{{"sheet", "other.png", "in.png", "--of", "sizes"}, {"kernel", "in.png"}}) {
    const auto result = Run(command);
    EXPECT_EQ(result.exit, 4);
    EXPECT_NE(result.err.find("in.png: cannot write: the file exists already; give --overwrite"), std::string::npos);
    EXPECT_EQ(host::Bytes(Path("in.png")), before);
  }
  EXPECT_EQ(Run({"kernel", "in.png", "--overwrite"}).exit, 0);
  EXPECT_NE(host::Bytes(Path("in.png")), before);
}

TEST_F(SheetPrograms, ASheetReplacesNothingThatItReads) {
  MakePicture("other.png");
  if (host::kMakesLinks) std::filesystem::create_symlink("in.png", Path("link.png"));
  const std::string before = host::Bytes(Path("in.png"));
  for (const std::string file : {"in.png", "link.png", "other.png"}) {
    if (!host::kMakesLinks && file == "link.png") continue;
    ExpectRefusal({"sheet", "in.png", file, "--of", "ramps", "--to", "other.png", "--overwrite"}, 2,
                  "OUTPUT: expected another name, \"" + file + "\" is read by this run");
  }
  EXPECT_EQ(host::Bytes(Path("in.png")), before);
}

TEST_F(SheetPrograms, DrawsAndRefusesKernels) {
  for (const std::string blur : {"0", "0.001", "720"}) {
    const auto result = Run({"kernel", "k" + blur + ".png", "--blur", blur});
    EXPECT_EQ(result.exit, 0) << result.err;
  }
  EXPECT_EQ(Run({"kernel", "k8.png", "--depth", "8"}).exit, 0);
  EXPECT_EQ(host::ReadPictureInfo(Path("k8.png")).width, 1640);
  EXPECT_EQ(Run({"kernel", "k32.png", "--depth", "32"}).exit, 0);
  ExpectRefusal({"kernel", "out.png", "--blur", "721"}, 2, "--blur: expected 0 to 720, found 721");
  ExpectRefusal({"kernel", "out.png", "--blur", "wide"}, 2, "--blur: expected a finite number, found \"wide\"");
  ExpectRefusal({"kernel", "out.png", "--depth", "9"}, 2, "--depth: expected 8, 16 or 32, found 9");
  ExpectRefusal({"kernel"}, 2, "OUTPUT is required; see vblur kernel --help");
}

}  // namespace
}  // namespace vblur::cli
