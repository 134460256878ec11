// "-": pictures from the standard input and to the standard output.
#include <nlohmann/json.hpp>

#include "tests/apps/PlatformTexts.h"
#include "tests/apps/StreamTest.h"

namespace vblur::cli {
namespace {

class StandardStreams : public StreamTest {};

TEST_F(StandardStreams, APictureGoesThroughAPipe) {
  const std::string expected = Rendered();
  for (const std::string form : {"render - - --blur 5", "render - --blur 5 -o -", "render --output - - --blur 5",
                                 "- - --blur 5", "in.png - --blur 5", "in.png -o - --blur 5"}) {
    const auto result = Pipe("in.png", form);
    EXPECT_EQ(result.exit, 0) << form;
    EXPECT_EQ(result.err, "") << form;
    EXPECT_TRUE(result.out == expected) << form;
  }
  EXPECT_EQ(Pipe("in.png", "- out.png --blur 5").exit, 0);
  EXPECT_TRUE(host::Bytes(Path("out.png")) == expected);
  EXPECT_EQ(host::NamesIn(folder_.path()), (std::set<std::string>{"in.png", "out.png"}));
}

// A name that is not the two dashes' is a file's.
TEST_F(StandardStreams, AFileMayHaveTheName) {
  std::filesystem::copy_file(Path("in.png"), Path("-"));
  EXPECT_EQ(Run({"render", "./-", "out.png", "--blur", "0"}).exit, 0);
  EXPECT_EQ(Pixels("out.png"), Pixels("in.png"));
  // Its existence changes nothing for the streams.
  MakePicture("other.png");
  for (const char* option : {"--overwrite", "--skip-existing"})
    EXPECT_TRUE(Pipe("in.png", std::string("- - --blur 5 ") + option).out == Rendered()) << option;
}

TEST_F(StandardStreams, TheFormatIsThatOfTheInputUnlessAsked) {
  const auto formatOf = [&](const std::string& bytes) {
    folder_.Write("result", bytes);
    return host::ReadPictureInfo(Path("result")).format;
  };
  for (const std::string& extension : kFormats) {
    if (extension == "tga") continue;  // it does not tell what it is
    ASSERT_EQ(Run({"in.png", "a." + extension, "--blur", "0"}).exit, 0);
    const std::string format = host::ReadPictureInfo(Path("a." + extension)).format;
    EXPECT_EQ(formatOf(Run({"-", "-", "-q"}, From("a." + extension)).out), format);
    EXPECT_EQ(formatOf(Run({"-", "-", "-q", "--format", extension}, From("in.png")).out), format);
  }
  EXPECT_EQ(Run({"in.png", "named.dat", "--format", "TIF"}).exit, 0);
  EXPECT_EQ(host::ReadPictureInfo(Path("named.dat")).format, "tiff");
  ExpectOneLine(Run({"-", "-", "--format", "doc"}, From("in.png")), 2,
                "--format: expected one of " + kExtensions + ", found \"doc\"");
  ExpectOneLine(Run({"-", "-", "--type", "half"}, From("in.png")), 2,
                "output: standard output: this format has no type half, expected one of uint8 uint16");
}

TEST_F(StandardStreams, AnInputThatIsNoPictureIsNamed) {
  folder_.Write("empty", "");
  folder_.Write("text", "hello");
  const std::string bytes = host::Bytes(Path("in.png"));
  folder_.Write("cut", bytes.substr(0, bytes.size() / 2));
  const std::string cannot = "standard input: cannot read: ";
  for (const char* output : {"-", "out.png"}) {
    const std::vector<std::string> render{"render", "-", output};
    ExpectOneLine(Run(render, From("empty")), 3, cannot + "it is empty, a picture was expected");
    ExpectOneLine(Run(render, From("text")), 3, cannot + kNoPicture);
    ExpectOneLine(Run(render, From("cut")), 3, cannot + kCutPng);
  }
  EXPECT_FALSE(Exists("out.png"));
}

TEST_F(StandardStreams, TheLimitsHold) {
  const std::string cannot = "standard input: cannot read: ";
  ExpectOneLine(Pipe("in.png", "- - --max-pixels 1K"), 3,
                cannot + "40 x 30 pixels, 1200 in all, expected at most 1000; give --max-pixels to allow more");
  MakePicture("in.png", 400, 300);
  EXPECT_EQ(
      Pipe("in.png", "- - --memory 600K").err,
      "vblur: standard output: a frame of 400 x 300 pixels needs 2M of memory, 600K are allowed; give --memory to "
      "allow more\n");
}

TEST_F(StandardStreams, NothingIsLeftInTheTemporaryFolder) {
  std::filesystem::create_directory(Path("tmp"));
  const Environment folder(kTemporaryFolder, Path("tmp").string());
  folder_.Write("empty", "");
  EXPECT_EQ(Pipe("in.png", "- -").exit, 0);
  EXPECT_EQ(Pipe("empty", "- -").exit, 3);
  EXPECT_TRUE(std::filesystem::is_empty(Path("tmp")));
}

TEST_F(StandardStreams, MessagesStayApartFromThePicture) {
  const std::string expected = Rendered();
  for (const std::vector<std::string>& more :
       {std::vector<std::string>{"-vv"}, {"--progress", "json"}, {"--progress", "bar"}}) {
    std::vector<std::string> render{"render", "-", "-", "--blur", "5"};
    render.insert(render.end(), more.begin(), more.end());
    const auto result = Run(render, From("in.png"));
    EXPECT_TRUE(result.out == expected) << more.back();
    EXPECT_NE(result.err, "") << more.back();
  }
  const auto json = Run({"render", "-", "-", "--progress", "json"}, From("in.png"));
  EXPECT_NE(json.err.find(R"("frame":0,"file":"-","status":"done")"), std::string::npos) << json.err;
}

TEST_F(StandardStreams, WhatHasNoSenseIsRefused) {
  const auto refuse = [&](std::vector<std::string> arguments, const std::string& line) {
    arguments.insert(arguments.begin(), "render");
    ExpectOneLine(Run(arguments, From("in.png")), 2, line);
  };
  std::filesystem::create_directory(Path("folder"));
  refuse({"-", "-", "--mask", "-"}, "mask: the standard input is read as input already, expected a file");
  refuse({"in.png", "-", "--mask", "-", "--to", "-"},
         "mask: the standard input is read as input2 already, expected a file");
  refuse({"-", "folder"}, "OUTPUT: the standard input has no name to keep in a folder, expected the name of a file");
  refuse({"in.png", "-", "folder"},
         "OUTPUT: the standard input has no name to keep in a folder, expected the name of a file");
  refuse({"in.png", "in.png", "-"}, "-: expected a folder that exists, for 2 pictures");
  refuse({"-", "-", "--frames", "1-3"},
         "output: 3 frames would all be written to \"-\", expected a file name with a frame number such as "
         "out.%04d.png");
  refuse({"-", "-", "--save-job", "-"}, "--save-job: expected the name of a file, found -");
  refuse({"-"}, "OUTPUT is required; see vblur render --help");
}

TEST_F(StandardStreams, ServeJobsAndInfoToo) {
  const std::string expected = Rendered();
  std::filesystem::create_directory(Path("jobs"));
  const std::string job = R"({"input": {"file": "-"}, "output": {"file": "-"}, "properties": {"Blur": 5}})";
  folder_.Write("jobs/shot.json", job);
  EXPECT_TRUE(Run({"job", "jobs/shot.json"}, From("in.png")).out == expected);
  ExpectOneLine(Run({"job", "-"}, From("jobs/shot.json")), 2,
                "FILE: the standard input is the job file, expected the job's pictures in files");
  EXPECT_EQ(Run({"-", "-", "--blur", "5", "--save-job", "jobs/again.json"}, From("in.png")).exit, 0);
  EXPECT_TRUE(Run({"job", "jobs/again.json"}, From("in.png")).out == expected);
  const auto mask = Run({"in.png", "-", "--mask", "-"}, From("in.png"));
  EXPECT_EQ(mask.exit, 0) << mask.err;
  const auto info = Pipe("in.png", "info - --to png");
  EXPECT_EQ(info.exit, 0);
  EXPECT_TRUE(info.out.starts_with("standard input: png, 40 x 30 pixels\n")) << info.out;
  EXPECT_EQ(nlohmann::json::parse(Pipe("in.png", "info - --json").out)["file"], "-");
}

TEST_F(StandardStreams, CommandsThatWriteFilesOnlySaySo) {
  folder_.Write("job.json", R"({"input": {"file": "in.png"}, "output": {"file": "out.png"}})");
  for (const auto& command : std::vector<std::vector<std::string>>{
           {"chart", "-"}, {"kernel", "-"}, {"sheet", "in.png", "-", "--of", "sizes"}, {"view", "job.json", "-"}}) {
    ExpectRefusal(command, 2, "OUTPUT: this command writes files only, expected the name of one, found -");
  }
  EXPECT_NE(Run({"view", "--help"}).out.find("- is the standard input"), std::string::npos);
}

TEST_F(StandardStreams, PropertiesComeFromTheInput) {
  ASSERT_EQ(Run({"render", "in.png", "a.png", "--blur", "7", "--save-properties", "look.json"}).exit, 0);
  const auto result = Run({"render", "in.png", "b.png", "--load-properties", "-"}, From("look.json"));
  EXPECT_EQ(result.exit, 0) << result.err;
  EXPECT_EQ(host::Bytes(Path("b.png")), host::Bytes(Path("a.png")));
  ExpectOneLine(Run({"render", "-", "c.png", "--load-properties", "-"}, From("look.json")), 2,
                "--load-properties: the standard input is a picture, expected a file");
}

}  // namespace
}  // namespace vblur::cli
