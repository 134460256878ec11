#include <sstream>

#include <nlohmann/json.hpp>

#include "tests/apps/PlatformTexts.h"
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class Render : public ProgramTest {};

TEST_F(Render, ASizeOfZeroGivesThePictureBack) {
  MakePicture("in.png");
  const auto result = Run({"render", "in.png", "out.png", "--blur", "0"});
  EXPECT_EQ(result.exit, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(Pixels("out.png"), Pixels("in.png"));
  EXPECT_EQ(host::NamesIn(folder_.path()), (std::set<std::string>{"in.png", "out.png"}));
}

TEST_F(Render, TheDepthIsThatOfTheRenderAlone) {
  MakePicture("in.png");
  EXPECT_EQ(Run({"render", "in.png", "out.png", "--blur", "0", "--depth", "16"}).exit, 0);
  EXPECT_EQ(host::ReadPictureInfo(Path("out.png")).samples, host::SampleKind::Unsigned8);
  EXPECT_EQ(Pixels("out.png"), Pixels("in.png"));
}

TEST_F(Render, SequencesTakeEitherPatternAndAStep) {
  MakeSequence(5);
  EXPECT_EQ(Run({"render", "in.###.png", "a.%02d.png", "--frames", "1-5x2", "--blur", "0"}).exit, 0);
  EXPECT_TRUE(Exists("a.01.png"));
  EXPECT_FALSE(Exists("a.02.png"));
  EXPECT_EQ(Pixels("a.05.png"), Pixels("in.005.png"));
}

TEST_F(Render, ExistingFilesAreRefusedReplacedOrSkipped) {
  MakePicture("in.png");
  MakePicture("out.png");
  const auto old = host::Bytes(Path("out.png"));
  const std::vector<std::string> render{"render", "in.png", "out.png", "--blur", "0"};
  ExpectRefusal(render, 4,
                "out.png: cannot write: the file exists already; give --overwrite to replace it or --skip-existing to "
                "leave it");
  auto skip = render;
  skip.push_back("--skip-existing");
  EXPECT_EQ(Run(skip).exit, 0);
  EXPECT_EQ(host::Bytes(Path("out.png")), old);
  auto overwrite = render;
  overwrite.push_back("--overwrite");
  EXPECT_EQ(Run(overwrite).exit, 0);
  EXPECT_EQ(Pixels("out.png"), Pixels("in.png"));
}

TEST_F(Render, AMissingFrameStopsOrIsSkipped) {
  MakeSequence(4);
  std::filesystem::remove(Path("in.003.png"));
  ExpectRefusal({"render", "in.%03d.png", "out.%03d.png", "--frames", "1-4"}, 3,
                "in.003.png: cannot read: no such file (frame 3)");
  const auto result =
      Run({"render", "in.%03d.png", "out.%03d.png", "--frames", "1-4", "--on-error", "skip", "--blur", "0"});
  EXPECT_EQ(result.exit, 1);
  EXPECT_EQ(result.err, "vblur: in.003.png: cannot read: no such file (frame 3)\n");
  EXPECT_TRUE(Exists("out.004.png"));
  EXPECT_FALSE(Exists("out.003.png"));
}

TEST_F(Render, ProgressIsOneObjectAFrame) {
  MakeSequence(3);
  const auto result = Run({"render", "in.%03d.png", "out.%03d.png", "--frames", "1-3", "--progress", "json"});
  EXPECT_EQ(result.exit, 0);
  std::istringstream lines(result.err);
  int frames = 0;
  for (std::string line; std::getline(lines, line);) {
    const auto object = nlohmann::json::parse(line);
    if (object["event"] != "frame") continue;
    EXPECT_EQ(object["frame"], ++frames);
    EXPECT_EQ(object["status"], "done");
    EXPECT_EQ(object["file"], "out.00" + std::to_string(frames) + ".png");
  }
  EXPECT_EQ(frames, 3);
}

TEST_F(Render, FailuresAreObjectsTooThen) {
  const auto result = Run({"render", "none.png", "out.png", "--progress", "json"});
  EXPECT_EQ(result.exit, 3);
  const auto object = nlohmann::json::parse(result.err);
  EXPECT_EQ(object["event"], "error");
  EXPECT_EQ(object["message"], "none.png: cannot read: no such file");
}

TEST_F(Render, APipeGetsLinesOnlyWhenAsked) {
  MakeSequence(2);
  const std::vector<std::string> render{"render", "in.%03d.png", "out.%03d.png", "--frames", "1-2",
                                        "--blur", "0",           "--overwrite"};
  EXPECT_EQ(Run(render).err, "");
  auto verbose = render;
  verbose.push_back("-v");
  const std::string lines = Run(verbose).err;
  EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 4);
  EXPECT_EQ(lines.rfind("2 frames, ", 0), 0u) << lines;
  EXPECT_NE(lines.find("\nframe 1: out.001.png (read "), std::string::npos) << lines;
  EXPECT_NE(lines.find(", input overscan 0 0 0 0 (left, right, bottom, top), memory 0."), std::string::npos) << lines;
}

TEST_F(Render, TheMemoryOfAFrameIsReported) {
  MakePicture("in.png", 512, 512);
  const std::string lines = Run({"render", "in.png", "out.png", "--blur", "300", "-v"}).err;
  // Source and result, and at this size the picture between two passes, which is as large.
  EXPECT_NE(lines.find(" (2.0 pictures, "), std::string::npos) << lines;
  const std::string json = Run({"render", "in.png", "out2.png", "--blur", "300", "--progress", "json"}).err;
  const std::size_t at = json.find("\"memory\":{\"pictures\":2097152,\"own\":");
  ASSERT_NE(at, std::string::npos) << json;
  const auto own = std::stoll(json.substr(json.find("own\":", at) + 5));
  EXPECT_GE(own, 4 * 512 * 512);
  EXPECT_LE(own, 4 * 512 * 512 + (4 << 20));
}

// The host's calls on the effect for one frame, in their order.
TEST_F(Render, TheTraceShowsTheOrderOfCalls) {
  MakePicture("in.png");
  const std::string trace = Run({"render", "in.png", "out.png", "--blur", "24", "-vv"}).err;
  std::size_t at = 0;
  for (const std::string call :
       {"GetInfo()", "GetImageEffectInfo({AE0D7C31-95AA-11D0-B685-00A024191AE0})", "PutValue(Blur, 24)",
        "BeginFrameRange(0, 0)", "SetOutput(", "SetInput(", "Verify()", "IsFormatSupported(", "GetInputOverscan(0)",
        "PrepareData()", "Setup()", "BeginFrame(0)", "RenderFrame(0)", "EndFrame()", "Cleanup()", "SetOutput(none)",
        "EndFrameRange()"}) {
    const std::size_t found = trace.find("effect." + call, at);
    ASSERT_NE(found, std::string::npos) << call << " after " << trace.substr(at);
    at = found + 1;
  }
  EXPECT_EQ(trace.find("= 0x8"), std::string::npos) << trace;
  EXPECT_NE(trace.find("input overscan 24 24 24 24"), std::string::npos) << trace;
}

TEST_F(Render, FramesSideBySideAreTheSameFrames) {
  MakeSequence(7);
  const auto render = [&](const std::string& output, const std::string& frames) {
    EXPECT_EQ(Run({"render", "in.%03d.png", output, "--frames", "1-7", "--blur", "0:0,7:30", "--overwrite",
                   "--frames-in-flight", frames})
                  .exit,
              0);
  };
  render("alone.%03d.png", "1");
  for (const std::string frames : {"2", "3", "16"}) {
    render("together.%03d.png", frames);
    for (int frame = 1; frame <= 7; ++frame) {
      const std::string name = ".00" + std::to_string(frame) + ".png";
      EXPECT_EQ(host::Bytes(Path("together" + name)), host::Bytes(Path("alone" + name))) << frames;
      std::filesystem::remove(Path("together" + name));
    }
  }
  for (const auto& [option, value] : {std::pair<std::string, std::string>{"--frames-in-flight", "0"},
                                      {"--frames-in-flight", "257"},
                                      {"--frames-in-flight", "x"},
                                      {"--memory", "0"},
                                      {"--memory", "G"},
                                      {"--memory", "-1M"},
                                      {"--memory", "2T"}}) {
    const auto result = Run({"render", "in.%03d.png", "o.%03d.png", "--frames", "1-7", option, value});
    EXPECT_EQ(result.exit, 2) << option << value;
    EXPECT_EQ(result.err.rfind("vblur: " + option + ": expected ", 0), 0u) << result.err;
  }
}

TEST_F(Render, MemoryHoldsThePicturesAndTheEffect) {
  MakeSequence(7);
  // Input, output and the filter's own picture: three times 40 x 30 pixels of 4 bytes.
  const auto command = [](const std::string& memory) {
    return std::vector<std::string>{"render", "in.%03d.png", "out.%03d.png", "--frames", "1-7", "--memory", memory};
  };
  ExpectRefusal(
      command("14K"), 1,
      "out.001.png: a frame of 40 x 30 pixels needs 15K of memory, 14K are allowed; give --memory to allow more");
  EXPECT_EQ(Run(command("0.01M")).exit, 1);
  EXPECT_EQ(Run(command("14.5K")).exit, 0);
}

TEST_F(Render, PropertiesAreKeptInAFile) {
  MakePicture("in.png");
  EXPECT_EQ(Run({"render", "in.png", "a.png", "--blur", "0:4,8:12", "--method", "Sharpen", "--blend", "33.25",
                 "--save-properties", "look.json"})
                .exit,
            0);
  EXPECT_EQ(Run({"render", "in.png", "b.png", "--load-properties", "look.json"}).exit, 0);
  EXPECT_EQ(host::Bytes(Path("b.png")), host::Bytes(Path("a.png")));
  // An option overrides the loaded property, also with the default value.
  EXPECT_EQ(
      Run({"render", "in.png", "c.png", "--load-properties", "look.json", "--blur", "10", "--method", "Blur"}).exit, 0);
  EXPECT_EQ(Run({"render", "in.png", "d.png", "--blend", "33.25"}).exit, 0);
  EXPECT_EQ(host::Bytes(Path("c.png")), host::Bytes(Path("d.png")));
  const auto missing = Run({"render", "in.png", "e.png", "--load-properties", "none.json"});
  EXPECT_EQ(missing.exit, 3);
  EXPECT_EQ(missing.err, "vblur: none.json: cannot read the property file: No such file or directory\n");
}

TEST_F(Render, TheCodeThatRendersDoesNotShow) {
  MakePicture("in.png");
  EXPECT_EQ(Run({"render", "in.png", "twin.png", "--blur", "7.5", "--cpu", "twin"}).exit, 0);
  EXPECT_EQ(Run({"render", "in.png", "native.png", "--blur", "7.5", "--cpu", "native"}).exit, 0);
  EXPECT_EQ(host::Bytes(Path("twin.png")), host::Bytes(Path("native.png")));
  const auto result = Run({"render", "in.png", "o.png", "--cpu", "AVX9"});
  EXPECT_EQ(result.exit, 2);
  EXPECT_EQ(result.err.rfind("vblur: --cpu: unknown CPU level \"AVX9\", expected one of these: twin ", 0), 0u)
      << result.err;
}

TEST_F(Render, AServerThatIsNoneIsRefused) {
  MakePicture("in.png");
  auto result = Run({"render", "in.png", "o.png", "--server", kServerFile});
  EXPECT_EQ(result.exit, 3);
  EXPECT_EQ(result.err, "vblur: " + kServerFile + ": cannot load the effect: no such file\n");
  result = Run({"render", "in.png", "o.png", "--server", "in.png"});
  EXPECT_EQ(result.exit, 3);
  EXPECT_EQ(result.err.rfind("vblur: in.png: cannot load the effect: ", 0), 0u) << result.err;
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
  EXPECT_EQ(result.err.find('%'), std::string::npos) << result.err;
}

TEST_F(Render, ASavedJobRendersTheSame) {
  MakePicture("in.png");
  std::filesystem::create_directory(Path("jobs"));
  EXPECT_EQ(Run({"render", "in.png", "out.png", "--blur", "7.25", "--channels", "luminance", "--method", "Sharpen",
                 "--save-job", "jobs/shot.json"})
                .exit,
            0);
  const auto rendered = host::Bytes(Path("out.png"));
  std::filesystem::remove(Path("out.png"));
  EXPECT_EQ(Run({"job", "jobs/shot.json"}).exit, 0);
  EXPECT_EQ(host::Bytes(Path("out.png")), rendered);
  for (const auto& form : std::vector<std::vector<std::string>>{{"--job", "jobs/shot.json", "--overwrite"},
                                                                {"--overwrite", "--job=jobs/shot.json"},
                                                                {"-q", "--job", "jobs/shot.json", "--overwrite"}}) {
    const auto again = Run(form);
    EXPECT_EQ(again.exit, 0) << again.err;
    EXPECT_EQ(host::Bytes(Path("out.png")), rendered);
  }
}

TEST_F(Render, AJobCanBeChangedOnTheCommandLine) {
  MakeSequence(3);
  folder_.Write("shot.json", R"({"input": {"file": "in.%03d.png"}, "output": {"file": "out.%03d.png"},
                                 "frames": [1, 3], "properties": {"Blur": 30}})");
  EXPECT_EQ(Run({"job", "shot.json", "--set", "Blur=0", "--set", "Channels=RGBA", "--frames", "2-2"}).exit, 0);
  EXPECT_FALSE(Exists("out.001.png"));
  EXPECT_EQ(Pixels("out.002.png"), Pixels("in.002.png"));
}

TEST_F(Render, LargeSizesAreWarnedOfOnce) {
  MakePicture("in.png");
  const std::vector<std::string> render{"render", "in.png", "out.png", "--blur", "701", "--overwrite"};
  const auto result = Run(render);
  EXPECT_EQ(result.exit, 0);
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
  EXPECT_NE(result.err.find("at a Blur of 701 flat areas"), std::string::npos) << result.err;
  auto quiet = render;
  quiet.push_back("-q");
  EXPECT_EQ(Run(quiet).err, "");
  EXPECT_EQ(Run({"render", "in.png", "out.png", "--blur", "10", "--overwrite"}).err, "");
}

}  // namespace
}  // namespace vblur::cli
