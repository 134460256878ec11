// vblur render with --save-job and --save-properties: what they replace and what they leave behind.
#include "tests/apps/PlatformTexts.h"
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class SavedFiles : public ProgramTest {
 protected:
  SavedFiles() { MakePicture("in.png"); }

  void ExpectOtherName(std::vector<std::string> options, const std::string& what) const {
    options.insert(options.begin(), {"render", "in.png", "out.png", "--overwrite"});
    const std::string before = host::Bytes(Path("in.png"));
    ExpectRefusal(options, 2, what);
    EXPECT_EQ(host::Bytes(Path("in.png")), before);
  }
};

TEST_F(SavedFiles, ReplaceOldOnesOnlyWhenTold) {
  const auto old = folder_.Write("old.json", "old");
  for (const std::string option : {"--save-job", "--save-properties"}) {
    folder_.Write("old.json", "old");
    const std::vector<std::string> render{"render", "in.png", "out.png", "--blur", "3", option, "old.json"};
    ExpectRefusal(render, 4, "old.json: cannot write: the file exists already; give --overwrite to replace it");
    EXPECT_EQ(host::Bytes(old), "old");
    auto overwrite = render;
    overwrite.push_back("--overwrite");
    EXPECT_EQ(Run(overwrite).exit, 0);
    EXPECT_NE(host::Bytes(old), "old");
    std::filesystem::remove(Path("out.png"));
  }
}

TEST_F(SavedFiles, TakeTheNameOfNothingThatTheRunReadsOrWrites) {
  MakePicture("mask.png");
  MakePicture("second.png");
  folder_.Write("look.json", R"({"version": 1, "properties": {}})");
  if (host::kMakesLinks) std::filesystem::create_symlink("in.png", Path("link.png"));
  for (const std::string option : {"--save-job", "--save-properties"}) {
    const auto another = [&](const std::string& file) { return option + ": expected another name, \"" + file + "\" "; };
    ExpectOtherName({option, "in.png"}, another("in.png") + "is read by this run");
    if (host::kMakesLinks) {
      ExpectOtherName({option, "link.png"}, another("link.png") + "is read by this run");
    }
    ExpectOtherName({"--mask", "mask.png", option, "mask.png"}, another("mask.png") + "is read by this run");
    ExpectOtherName({"--to", "second.png", option, "second.png"}, another("second.png") + "is read by this run");
    ExpectOtherName({"--load-properties", "look.json", option, "./look.json"},
                    another("./look.json") + "is read by this run");
    ExpectOtherName({option, "out.png"}, another("out.png") + "is written by this run already");
  }
  ExpectOtherName({"--save-job", "a.json", "--save-properties", "a.json"},
                  "--save-properties: expected another name, \"a.json\" is written by this run already");
}

// Also of frames that are not rendered, whether they exist or not.
TEST_F(SavedFiles, TakeTheNameOfNoFrameOfASequence) {
  std::filesystem::create_directory(Path("shots"));
  if (host::kMakesLinks) std::filesystem::create_symlink("shots", Path("link"));
  MakePicture("shots/in.1.png");
  MakePicture("shots/in.2.png");
  for (const auto& [file, frame] : {std::pair<std::string, std::string>{"shots/in.2.png", "2"},
                                    {"link/in.2.png", "2"},
                                    {"./shots/../shots/in.77.png", "77"}}) {
    if (!host::kMakesLinks && file.starts_with("link")) continue;
    for (const char* option : {"--save-job", "--save-properties"}) {
      ExpectRefusal({"render", "shots/in.%d.png", "out.%d.png", "--frames", "1", "--overwrite", option, file}, 2,
                    option + (": expected another name, \"" + file + "\" is frame ") + frame +
                        " of a sequence that this run reads");
    }
  }
  EXPECT_EQ(Run({"render", "shots/in.%d.png", "out.%d.png", "--frames", "1", "--save-job", "shots/in.x.png"}).exit, 0);
}

TEST_F(SavedFiles, AreNotThereAfterARunThatFails) {
  const std::vector<std::string> saving{"--save-job", "job.json", "--save-properties", "look.json"};
  const auto refuse = [&](std::vector<std::string> arguments, int exit, const std::string& line) {
    arguments.insert(arguments.end(), saving.begin(), saving.end());
    ExpectRefusal(arguments, exit, line);
  };
  refuse({"render", "none.png", "out.png"}, 3, "none.png: cannot read: no such file");
  refuse({"render", "in.png", "out.png", "--depth", "9"}, 2, "depth: expected 8, 16 or 32, found 9");
  refuse({"render", "in.png", "no/out.png"}, 4, "no/out.png: cannot write: the folder no does not exist");
  const std::string bytes = host::Bytes(Path("in.png"));
  folder_.Write("cut.png", bytes.substr(0, bytes.size() / 2));
  refuse({"render", "cut.png", "out.png"}, 3, "cut.png: cannot read: " + kCutPng);
}

}  // namespace
}  // namespace vblur::cli
