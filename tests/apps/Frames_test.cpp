#include "host/base/NameMatch.h"
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

// Which frames are rendered, under which names.
class Frames : public ProgramTest {
 protected:
  void SetUp() override { std::filesystem::create_directory(Path("out")); }

  void MakeFrames(const std::vector<std::string>& numbers) const {
    for (const std::string& number : numbers)
      MakePicture("in." + number + ".png", 8, 6);
  }

  // The names in the folder of the outputs, which is empty afterwards.
  std::set<std::string> TakeOutputs() const {
    const auto names = host::NamesIn(Path("out"));
    std::filesystem::remove_all(Path("out"));
    std::filesystem::create_directory(Path("out"));
    return names;
  }

  std::set<std::string> Rendered(const std::string& frames, std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {"render", "in.%02d.png", "out/%02d.png", "--blur", "0", "--frames", frames});
    const auto result = Run(std::move(more));
    EXPECT_EQ(result.exit, 0) << result.err;
    return TakeOutputs();
  }
  using Names = std::set<std::string>;

  // The name that a picture gets in a folder, as messages have it.
  static std::string Shown(const std::filesystem::path& folder, const char* name) {
    return host::Quoted((folder / name).string());
  }
};

TEST_F(Frames, ListsOpenEndsAndAllThatExist) {
  MakeFrames({"01", "02", "03", "07", "08", "09", "10"});
  EXPECT_EQ(Rendered("1,3,7-9x2"), (Names{"01.png", "03.png", "07.png", "09.png"}));
  EXPECT_EQ(Rendered("7-"), (Names{"07.png", "08.png", "09.png", "10.png"}));
  EXPECT_EQ(Rendered("all"), (Names{"01.png", "02.png", "03.png", "07.png", "08.png", "09.png", "10.png"}));
  ExpectRefusal({"render", "in.%02d.png", "out/%02d.png", "--frames", "3-"}, 3,
                "in.04.png: cannot read: no such file (frame 4)");
  ExpectRefusal({"render", "in.%02d.png", "out/%02d.png", "--frames", "11-"}, 2, "frames: no frame from 11 on exists");
  ExpectRefusal({"render", "no.%02d.png", "out/%02d.png", "--frames", "all"}, 2,
                "input: no file of \"no.%02d.png\" exists, so there are no frames to take");
  ExpectRefusal({"render", "in.01.png", "out/%02d.png", "--frames", "all"}, 2,
                "frames: no input has a frame number in its name, expected frames by their numbers, such as 1-48");
}

TEST_F(Frames, PaddingsAreAlike) {
  MakeFrames({"01", "02"});
  for (const char* input : {"in.##.png", "in.@@.png", "in.%02d.png"}) {
    for (const char* output : {"out/a.#.png", "out/a_@.png", "out/a-%d.png"}) {
      const auto result = Run({"render", input, output, "--frames", "all", "--blur", "0"});
      EXPECT_EQ(result.exit, 0) << result.err;
    }
    EXPECT_EQ(TakeOutputs(), (Names{"a-1.png", "a-2.png", "a.1.png", "a.2.png", "a_1.png", "a_2.png"}));
  }
}

TEST_F(Frames, OutputsAreRenumbered) {
  MakeFrames({"05", "06", "07", "09"});
  EXPECT_EQ(Rendered("5-7", {"--renumber", "1"}), (Names{"01.png", "02.png", "03.png"}));
  EXPECT_EQ(Rendered("all", {"--renumber", "-1"}), (Names{"-1.png", "00.png", "01.png", "03.png"}));
  // Parts of a sequence fit together.
  EXPECT_EQ(Rendered("7", {"--start", "5", "--renumber", "1"}), (Names{"03.png"}));
  folder_.Write("job.json", R"({"input": {"file": "in.%02d.png"}, "frames": [5, 7],
                                "output": {"file": "out/%02d.png", "renumber": 11}, "properties": {"Blur": 0}})");
  EXPECT_EQ(Run({"job", "job.json", "--frames", "6"}).exit, 0);
  EXPECT_EQ(TakeOutputs(), (Names{"12.png"}));
  EXPECT_EQ(Run({"job", "job.json", "--renumber", "30"}).exit, 0);
  EXPECT_EQ(Pixels("out/30.png"), Pixels("in.05.png"));
  EXPECT_EQ(TakeOutputs(), (Names{"30.png", "31.png", "32.png"}));
}

TEST_F(Frames, SavedJobsHoldLists) {
  MakeFrames({"01", "03", "05"});
  ASSERT_EQ(Run({"render", "in.%02d.png", "out/%02d.png", "--frames", "1-5x2", "--save-job", "job.json"}).exit, 0);
  const auto names = TakeOutputs();
  EXPECT_EQ(Run({"job", "job.json"}).exit, 0);
  EXPECT_EQ(TakeOutputs(), names);
}

TEST_F(Frames, SeveralPicturesKeepTheirNamesInAFolder) {
  MakePicture("a.png");
  MakePicture("b.png");
  std::filesystem::create_directory(Path("deep"));
  MakePicture("deep/c.png");
  EXPECT_EQ(Run({"render", "a.png", "b.png", "deep/c.png", "out/", "--blur", "0"}).exit, 0);
  EXPECT_EQ(Pixels("out/c.png"), Pixels("deep/c.png"));
  EXPECT_EQ(TakeOutputs(), (Names{"a.png", "b.png", "c.png"}));
  EXPECT_EQ(Run({"render", "a.png", "out"}).exit, 0);
  EXPECT_EQ(TakeOutputs(), (Names{"a.png"}));
  MakeFrames({"01", "02"});
  EXPECT_EQ(Run({"render", "in.%02d.png", "a.png", "out", "--frames", "1-1"}).exit, 0);
  EXPECT_EQ(TakeOutputs(), (Names{"in.01.png", "a.png"}));
}

TEST_F(Frames, SeveralPicturesAreCheckedBeforeOneIsWritten) {
  MakePicture("a.png");
  MakePicture("b.png");
  std::filesystem::create_directory(Path("deep"));
  MakePicture("deep/a.png");
  ExpectRefusal({"render", "a.png", "deep/a.png", "out"}, 2,
                "OUTPUT: \"a.png\" and \"deep/a.png\" would both be written to " + Shown("out", "a.png") +
                    ", expected pictures of different names");
  ExpectRefusal({"render", "a.png", "b.png", "none"}, 2, "none: expected a folder that exists, for 2 pictures");
  ExpectRefusal({"render", "a.png", "none/"}, 2, "none/: expected a folder that exists");
  ExpectRefusal({"render", "a.png", "b.png", "."}, 2,
                "output: " + Shown(".", "a.png") +
                    " is the picture that input is read from, expected another file; give --overwrite to "
                    "replace it");
  ExpectRefusal({"render", "a.png", "b.png", "out", "--save-job", "job.json"}, 2,
                "--save-job: a job file holds one input, found 2");
  EXPECT_EQ(TakeOutputs(), Names{});
  const auto result = Run({"render", "a.png", "none.png", "b.png", "out", "--on-error", "skip"});
  EXPECT_EQ(result.exit, 1) << result.err;
  EXPECT_EQ(TakeOutputs(), (Names{"a.png", "b.png"}));
}

TEST_F(Frames, SeveralPicturesReplaceNothingOfEachOther) {
  std::filesystem::create_directory(Path("q"));
  MakePicture("q/1.png");
  MakePicture("q/2.png");
  MakePicture("out/1.png");
  const std::string mask = host::Bytes(Path("out/1.png"));
  ExpectRefusal(
      {"render", "q/1.png", "q/2.png", "out", "--mask", "out/1.png", "--overwrite"}, 2,
      "OUTPUT: " + Shown("out", "1.png") + " is read for another picture of this run, expected a file of its own");
  EXPECT_EQ(host::Bytes(Path("out/1.png")), mask);
  std::filesystem::remove(Path("out/1.png"));
  if (!host::kMakesLinks) return;
  const std::string second = host::Bytes(Path("q/2.png"));
  std::filesystem::create_symlink("../q/2.png", Path("out/1.png"));
  ExpectRefusal(
      {"render", "q/1.png", "q/2.png", "out", "--overwrite"}, 2,
      "OUTPUT: " + Shown("out", "1.png") + " is read for another picture of this run, expected a file of its own");
  EXPECT_EQ(host::Bytes(Path("q/2.png")), second);
  std::filesystem::remove(Path("out/1.png"));
  MakePicture("out/2.png");
  std::filesystem::create_symlink("2.png", Path("out/1.png"));
  ExpectRefusal(
      {"render", "q/1.png", "q/2.png", "out", "--overwrite"}, 2,
      "OUTPUT: " + Shown("out", "2.png") + " is written for another picture of this run, expected a file of its own");
}

TEST_F(Frames, NamesThatNoFileHasAreRefused) {
  MakePicture("in.png");
  folder_.Write("zero.json", R"({"input": {"file": "in.png"}, "output": {"file": "o\u0000.png"}})");
  ExpectRefusal({"job", "zero.json"}, 2,
                "zero.json: output/file: \"o\\u0000.png\": a file name holds no NUL character");
  const auto result = Run({"render", "in.png", std::string(300, 'x') + ".png"});
  EXPECT_EQ(result.exit, 2);
  EXPECT_NE(result.err.find(": a name of more than 255 "), std::string::npos) << result.err;
  folder_.Write("look.json", R"({"version": 1, "properties": {"Bl\u0000ur": 5, "Channels": "RG\u0000B"}})");
  const auto look = Run({"render", "in.png", "o.png", "--load-properties", "look.json"});
  EXPECT_EQ(look.exit, 2);
  EXPECT_EQ(std::count(look.err.begin(), look.err.end(), '\n'), 1) << look.err;
  EXPECT_FALSE(Exists("o.png"));
}

}  // namespace
}  // namespace vblur::cli
