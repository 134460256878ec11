// Every user error is one line, and no output is touched.
#include "tests/apps/PlatformTexts.h"
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class BadInput : public ProgramTest {
 protected:
  BadInput() { MakePicture("in.png"); }

  void ExpectUnreadable(const std::string& file, const std::string& why) const {
    ExpectRefusal({"render", file, "out.png"}, 3, file + ": cannot read: " + why);
  }
  // A valid command with this option and value appended.
  void ExpectWrongOption(const std::string& option, const std::string& value, const std::string& line) const {
    ExpectRefusal({"render", "in.png", "out.png", option, value}, 2, line);
  }
};

TEST_F(BadInput, FilesThatAreNoPictures) {
  ExpectUnreadable("none.png", "no such file");
  std::filesystem::create_directory(Path("dir.png"));
  ExpectUnreadable("dir.png", "it is a folder, a picture file was expected");
  folder_.Write("zero.png", "");
  ExpectUnreadable("zero.png", "the file is empty, a picture was expected");
  folder_.Write("text.png", "hello");
  ExpectUnreadable("text.png", kNoPng);
}

TEST_F(BadInput, NumbersWithoutAZero) {
  ExpectUnreadable("in.%4d.png", "no such file; %4d is no frame number, expected %04d");
  ExpectRefusal({"render", "in.%3d.png", "out.%03d.png", "--frames", "1-3"}, 3,
                "in.%3d.png: cannot read: no such file (frame 1); %3d is no frame number, expected %03d");
}

TEST_F(BadInput, PicturesCutShort) {
  const std::string bytes = host::Bytes(Path("in.png"));
  folder_.Write("cut.png", bytes.substr(0, bytes.size() / 2));
  ExpectUnreadable("cut.png", kCutPng);
}

// Positions and sizes with which pixels could not be counted.
TEST_F(BadInput, PicturesBeyondThePixelsThatCount) {
  const std::string expected = ", expected pixels from -536870912 to 536870911";
  for (const char* origin : {"2147483600", "-2147483648", "536870912"}) {
    ExpectWrongOption("--origin", std::string(origin) + ",0",
                      "input/origin: reaches pixel " + std::string(origin) + expected);
  }
  // Its size is known when it is read.
  ExpectWrongOption("--origin", "0,536870900", "output: reaches pixel 536870929" + expected);
  EXPECT_EQ(Run({"render", "in.png", "far.png", "--origin", "536870872,-536870912"}).exit, 0);
  folder_.Write("job.json", R"({"input": {"file": "in.png", "origin": [-2147483648, 0]}, "output": {"file": "o.png"},
                                "properties": {"Blur": 20, "Crop Left": 10, "Display Cropped": true}})");
  ExpectRefusal({"job", "job.json"}, 2, "input/origin: reaches pixel -2147483648" + expected);
}

// A size of 0 over a project of 0: not a number.
TEST_F(BadInput, ABlurWithoutASizeFailsTheFrame) {
  folder_.Write("job.json", R"({"input": {"file": "in.png"}, "output": {"file": "o.png"}, "properties": {"Blur": 9},
                                "project": {"userSize": [0, 10], "worldSize": [10, 10]}})");
  ExpectRefusal({"job", "job.json"}, 1,
                "o.png: the effect cannot render this frame: its blur has no size that can be rendered");
}

TEST_F(BadInput, UnknownNamesGetTheNearest) {
  ExpectRefusal({"render", "in.png", "out.png", "--blurr", "5"}, 2,
                "unknown option \"--blurr\"; did you mean \"--blur\"?; see vblur render --help");
  ExpectRefusal({"rendr", "in.png", "out.png"}, 2,
                "unknown command \"rendr\"; did you mean \"render\"?; see vblur --help");
  ExpectRefusal({"properties", "Blurr"}, 2, "unknown property \"Blurr\"; did you mean \"Blur\"?");
  ExpectRefusal({"job", "in.json", "out.png"}, 2, "unexpected argument \"out.png\"; see vblur job --help");
  ExpectRefusal({"render", "in.png", "out.png", "more.png"}, 2,
                "more.png: expected a folder that exists, for 2 pictures");
  ExpectRefusal({"render", "in.png"}, 2, "OUTPUT is required; see vblur render --help");
}

TEST_F(BadInput, ValuesThatAreMissingTwiceThereOrNotTaken) {
  ExpectRefusal({"render", "in.png", "out.png", "--blur"}, 2,
                "--blur: expected a value, NUMBER|PERCENT%|TIME:NUMBER,...; see vblur render --help");
  ExpectRefusal({"render", "in.png", "out.png", "--blur", "1", "--blur", "2"}, 2,
                "--blur: given twice; see vblur render --help");
  ExpectRefusal({"render", "in.png", "out.png", "--threads"}, 2,
                "--threads: expected a value, N; see vblur render --help");
  ExpectRefusal({"chart", "out.png", "--overwrite=x"}, 2, "--overwrite: takes no value; see vblur chart --help");
}

TEST_F(BadInput, PropertyValues) {
  ExpectWrongOption("--blur", "nan", "Blur: expected a finite number or keys such as 0:10,24:50, found \"nan\"");
  ExpectWrongOption("--blur", "inf", "Blur: expected a finite number or keys such as 0:10,24:50, found \"inf\"");
  ExpectWrongOption("--blur", "wide", "Blur: expected a finite number or keys such as 0:10,24:50, found \"wide\"");
  for (const auto& [option, value] : std::vector<std::pair<std::string, std::string>>{
           {"--channels", "Purple"}, {"--blank-cropped", "maybe"}, {"--blur", "10:1,5:2"}, {"--method", "0:0,1:1"}}) {
    const auto before = host::NamesIn(folder_.path());
    const auto result = Run({"render", "in.png", "out.png", option, value});
    EXPECT_EQ(result.exit, 2) << option;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    EXPECT_EQ(host::NamesIn(folder_.path()), before);
  }
}

TEST_F(BadInput, ValuesOutOfRange) {
  ExpectWrongOption("--blur", "-1", "Blur: expected 0 to 720, found -1");
  ExpectWrongOption("--blur", "0:10,5:721", "Blur: expected 0 to 720, found 721");
  ExpectWrongOption("--blend", "500", "Blend: expected 0 to 100, found 500");
  ExpectWrongOption("--aspect", "-100.5", "Aspect: expected -100 to 100, found -100.5");
  ExpectWrongOption("--crop-left", "120", "Crop Left: expected 0 to 100, found 120");
  ExpectWrongOption("--proxy", "0.5,0", "--proxy: expected two factors of more than 0, found 0.5,0");
  ExpectWrongOption("--proxy", "-1,1", "--proxy: expected two factors of more than 0, found -1,1");
  ExpectWrongOption("--duration", "0", "--duration: expected more than 0, found 0");
  folder_.Write("job.json", R"({"input": {"file": "in.png"}, "output": {"file": "out.png"}})");
  ExpectRefusal({"job", "job.json", "--set", "Blur=900"}, 2, "--set: Blur: expected 0 to 720, found 900");
  ExpectRefusal({"job", "job.json", "--set", "Blurr=9"}, 2,
                "--set: unknown property \"Blurr\"; did you mean \"Blur\"?");
}

TEST_F(BadInput, OptionValues) {
  ExpectWrongOption("--roi", "1,2,3", "--roi: expected four whole numbers such as 0,0,640,480, found \"1,2,3\"");
  ExpectWrongOption("--roi", "0,0,0,5", "roi width: expected at least 1, found 0");
  ExpectWrongOption("--depth", "12", "depth: expected 8, 16 or 32, found 12");
  ExpectWrongOption("--field", "third", "--field: expected frame, first, second or both, found \"third\"");
  ExpectWrongOption("--time", "inf", "--time: expected a finite number, found \"inf\"");
  ExpectWrongOption("--proxy", "1", "--proxy: expected two finite numbers such as 0.5,0.5, found \"1\"");
  ExpectWrongOption("--threads", "0", "--threads: expected 1 to 1024, found 0");
  ExpectWrongOption("--on-error", "panic", "--on-error: expected stop or skip, found \"panic\"");
}

TEST_F(BadInput, OutputsThatCannotBe) {
  ExpectRefusal({"render", "in.png", "out.xyz"}, 2,
                "out.xyz: cannot write: unknown file extension \"xyz\", one of these was expected: " + kExtensions);
  ExpectRefusal({"render", "in.png", "no/out.png"}, 4, "no/out.png: cannot write: the folder no does not exist");
  MakeSequence(3);
  const auto result = Run({"render", "in.%03d.png", "out.png", "--frames", "1-3"});
  EXPECT_EQ(result.exit, 2);
  EXPECT_NE(result.err.find("3 frames would all be written to \"out.png\""), std::string::npos) << result.err;
  EXPECT_FALSE(Exists("out.png"));
}

TEST_F(BadInput, Jobs) {
  ExpectRefusal({"job", "none.json"}, 3, "none.json: cannot read the job file: No such file or directory");
  const std::string files = R"("input": {"file": "in.png"}, "output": {"file": "out.png"})";
  for (const std::string& text : std::vector<std::string>{
           "{\n  " + files + ",,\n}", "{" + files + R"(, "properties": {"Blurr": 3}})",
           "{" + files + R"(, "properties": {"Blur": "big"}})",
           "{" + files + R"(, "properties": {"Channels": "Purple"}})",
           "{" + files + R"(, "properties": {"Blur": {"keys": [[5, 1], [2, 1]]}}})",
           "{" + files + R"(, "properties": {"Method": {"keys": [[0, 1]]}}})", std::string("[]"), std::string("{}")}) {
    folder_.Write("bad.json", text);
    const auto before = host::NamesIn(folder_.path());
    const auto result = Run({"job", "bad.json"});
    EXPECT_EQ(result.exit, 2) << text;
    EXPECT_EQ(result.err.rfind("vblur: bad.json", 0), 0u) << result.err;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    EXPECT_EQ(host::NamesIn(folder_.path()), before);
  }
}

}  // namespace
}  // namespace vblur::cli
