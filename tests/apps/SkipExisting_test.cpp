#include "tests/apps/PlatformTexts.h"
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

// Frames that are left alone are whole.
class SkipExisting : public ProgramTest {
 protected:
  static constexpr int kFrames = 5;

  void SetUp() override {
    for (int frame = 1; frame <= kFrames; ++frame) {
      MakePicture(Name("in", frame), 24, 16);
      std::filesystem::copy_file(Path(Name("in", frame)), Path(Name("out", frame)));
    }
  }

  static std::string Name(const std::string& stem, int frame, const std::string& extension = ".png") {
    return stem + std::to_string(frame) + extension;
  }

  ProcessResult Render(std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {"render", "in%d.png", "out%d.png", "--frames", "1-5", "--blur", "6", "--skip-existing"});
    return Run(std::move(more));
  }

  // Whether a frame was rendered: its output is not the copy of its input any more.
  bool IsRendered(int frame) const { return Pixels(Name("out", frame)) != Pixels(Name("in", frame)); }
};

TEST_F(SkipExisting, WholeFramesAreLeft) {
  std::filesystem::remove(Path("out3.png"));
  const auto result = Render();
  EXPECT_EQ(result.exit, 0);
  EXPECT_EQ(result.err, "");
  for (int frame = 1; frame <= kFrames; ++frame)
    EXPECT_EQ(IsRendered(frame), frame == 3) << frame;
}

TEST_F(SkipExisting, EmptyHalfAndForeignFilesAreRenderedAgain) {
  folder_.Write("out1.png", "");
  const std::string bytes = host::Bytes(Path("out2.png"));
  folder_.Write("out2.png", bytes.substr(0, bytes.size() / 2));
  folder_.Write("out3.png", "no picture");
  MakePicture("out4.png", 20, 16);
  const auto result = Render();
  EXPECT_EQ(result.exit, 0) << result.err;
  EXPECT_EQ(result.err,
            "vblur: out1.png: cannot read: the file is empty, a picture was expected; rendered again\n"
            "vblur: out2.png: cannot read: " +
                kCutPng + "; rendered again\nvblur: out3.png: cannot read: " + kNoPng +
                "; rendered again\nvblur: out4.png: 20 x 16 pixels, where the frame has 24 x 16; rendered again\n");
  for (int frame = 1; frame <= kFrames; ++frame)
    EXPECT_EQ(IsRendered(frame), frame < 5) << frame;
  EXPECT_EQ(Render().err, "") << "they are whole now";
}

TEST_F(SkipExisting, FilesOfAnotherFormatAreRenderedAgain) {
  MakePicture("other.bmp", 24, 16);
  std::filesystem::rename(Path("other.bmp"), Path("out2.png"));
  const auto result = Render();
  EXPECT_EQ(result.exit, 0);
  EXPECT_EQ(result.err, "vblur: out2.png: the format is bmp, expected png; rendered again\n");
  EXPECT_TRUE(IsRendered(2));
}

TEST_F(SkipExisting, FilesThatLackTheirLastByteAreRenderedAgain) {
  for (const std::string& extension : kFormats) {
    if (extension == "jpg" || extension == "webp") continue;  // an end that is missing is not missed there
    const std::string name = "o." + extension;
    const std::vector<std::string> command{"render", "in1.png", name, "--skip-existing", "-v"};
    ASSERT_EQ(Run(command).exit, 0) << extension;
    std::filesystem::resize_file(Path(name), std::filesystem::file_size(Path(name)) - 1);
    const auto again = Run(command);
    EXPECT_EQ(again.exit, 0) << extension;
    EXPECT_NE(again.err.find("; rendered again"), std::string::npos) << extension << ": " << again.err;
  }
}

TEST_F(SkipExisting, ProgressTellsWhatIsSkipped) {
  folder_.Write("out2.png", "");
  const auto result = Render({"--progress", "json"});
  EXPECT_EQ(result.exit, 0);
  EXPECT_NE(result.err.find(R"("event":"warning")"), std::string::npos) << result.err;
  EXPECT_NE(result.err.find(R"("done":1,"skipped":4,"failed":0)"), std::string::npos) << result.err;
}

// A file that is not whole needs its input, one that is whole does not.
TEST_F(SkipExisting, InputsAreMissedOnlyWhereTheyAreNeeded) {
  std::filesystem::remove(Path("in2.png"));
  EXPECT_EQ(Render().exit, 0);
  folder_.Write("out2.png", "");
  const auto result = Render();
  EXPECT_EQ(result.exit, 3);
  EXPECT_NE(result.err.find("in2.png: cannot read: no such file (frame 2)\n"), std::string::npos) << result.err;
}

TEST_F(SkipExisting, EveryFormatIsWholeAfterItsOwnRender) {
  for (const std::string& extension : kFormats) {
    const std::vector<std::string> command{"render", "in1.png", "o." + extension, "--skip-existing", "-v"};
    ASSERT_EQ(Run(command).exit, 0) << extension;
    const auto again = Run(command);
    EXPECT_EQ(again.exit, 0) << extension;
    EXPECT_NE(again.err.find("exists, skipped"), std::string::npos) << extension << ": " << again.err;
  }
}

TEST_F(SkipExisting, EveryTypeIsThatOfTheFrame) {
  for (const std::string& type : kTypes) {
    const std::string from = type.starts_with("uint") ? "from.png" : "from.exr";
    ASSERT_EQ(Run({"render", "in1.png", from, "--type", type, "--overwrite"}).exit, 0);
    for (const std::string& extension : kFormats) {
      const std::vector<std::string> command{"render", from, type + "." + extension, "--skip-existing", "-v"};
      ASSERT_EQ(Run(command).exit, 0) << extension;
      const auto again = Run(command);
      EXPECT_NE(again.err.find("exists, skipped"), std::string::npos) << type << extension << ": " << again.err;
    }
  }
}

TEST_F(SkipExisting, FilesOfAnotherTypeAreRenderedAgain) {
  ASSERT_EQ(Render({"--type", "uint16"}).exit, 0);
  folder_.Write("out1.png", host::Bytes(Path("in1.png")));
  const auto again = Render({"--type", "uint16"});
  EXPECT_EQ(again.exit, 0);
  EXPECT_EQ(again.err, "vblur: out1.png: the samples are uint8, expected uint16; rendered again\n");
}

// The format is the one that is asked for, whatever the name.
TEST_F(SkipExisting, TheFormatMayBeAnotherThanThatOfTheName) {
  const std::vector<std::string> command{"render", "in1.png", "o.dat", "--format", "tif", "--skip-existing", "-v"};
  ASSERT_EQ(Run(command).exit, 0);
  const auto again = Run(command);
  EXPECT_EQ(again.exit, 0) << again.err;
  EXPECT_NE(again.err.find("exists, skipped"), std::string::npos) << again.err;
}

}  // namespace
}  // namespace vblur::cli
