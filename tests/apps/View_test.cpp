// The command view: pictures, pages, pen scripts and saved jobs.
#include "host/base/TextFile.h"
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class ViewProgram : public ProgramTest {
 protected:
  ViewProgram() {
    MakePicture("in.png", 64, 48);
    folder_.Write("job.json", R"({"version": 1, "input": {"file": "in.png"}, "output": {"file": "out.png"},
                                  "frames": [0, 0], "properties": {"Blur": 10}})");
  }
};

TEST_F(ViewProgram, RefusesWhatItCannotDoBeforeAnythingIsWritten) {
  const auto refuse = [&](std::vector<std::string> more, int exit, const std::string& line) {
    more.insert(more.begin(), {"view", "job.json", "view.png"});
    ExpectRefusal(more, exit, line);
  };
  refuse({"--zoom", "0"}, 2, "--zoom: expected 1/64 to 64, found 0");
  refuse({"--zoom", "65"}, 2, "--zoom: expected 1/64 to 64, found 65");
  refuse({"--size", "0x4"}, 2, "--size: expected at least 1x1, found 0x4");
  refuse({"--frame", "1"}, 2, "frame 1 is not in the job: expected 0, its only frame");
  refuse({"--pen", "none.pen"}, 3, "none.pen: cannot read the pen script: No such file or directory");
  refuse({"--save-job", "none/job.json"}, 4, "none/job.json: cannot write: the folder none does not exist");
  folder_.Write("a.pen", "snap a.png\nmove 1\n");
  refuse({"--pen", "a.pen"}, 2, "a.pen:2: expected \"move X Y\", found \"move 1\"");
  folder_.Write("b.pen", "snap view.png\n");
  refuse({"--pen", "b.pen"}, 2, "b.pen:1: expected another name, \"view.png\" is written by this run already");
  folder_.Write("c.pen", "snap in.png\n");
  folder_.Write("old.json", "old");
  refuse({"--save-job", "old.json"}, 4,
         "old.json: cannot write: the file exists already; give --overwrite to replace it");
  folder_.Write("old.png", "old");
  folder_.Write("d.pen", "snap old.png\n");
  refuse({"--pen", "d.pen"}, 4, "old.png: cannot write: the file exists already; give --overwrite to replace it");
  ExpectRefusal({"view", "none.json", "view.png"}, 3, "none.json: cannot read the job file: No such file or directory");
}

TEST_F(ViewProgram, ReplacesNothingThatItReads) {
  folder_.Write("job.pen", "snap in.png\n");
  if (host::kMakesLinks) std::filesystem::create_symlink("in.png", Path("link.png"));
  const auto before = host::Bytes(Path("in.png"));
  const auto refuse = [&](std::vector<std::string> arguments, const std::string& place, const std::string& file) {
    arguments.insert(arguments.begin(), {"view", "job.json"});
    arguments.push_back("--overwrite");
    ExpectRefusal(arguments, 2, place + ": expected another name, \"" + file + "\" is read by this run");
  };
  refuse({"in.png"}, "OUTPUT", "in.png");
  if (host::kMakesLinks) refuse({"link.png"}, "OUTPUT", "link.png");
  refuse({"view.png", "--save-job", "./job.json"}, "--save-job", "./job.json");
  refuse({"view.png", "--pen", "job.pen", "--save-job", "job.pen"}, "--save-job", "job.pen");
  refuse({"view.png", "--pen", "job.pen"}, "job.pen:1", "in.png");
  EXPECT_EQ(host::Bytes(Path("in.png")), before);
}

TEST_F(ViewProgram, DragsTheRingAndSavesTheJob) {
  folder_.Write("drag.pen", "snap idle.png\nmove 42 24\ndown 42 24\nmove 50 24\nsnap dragged.png\nup 52 24\n");
  const ProcessResult result =
      Run({"view", "job.json", "view.png", "--pen", "drag.pen", "--save-job", "after.json", "-vv"});
  EXPECT_EQ(result.exit, 0) << result.err;
  EXPECT_EQ(result.out, "");
  for (const char* call : {"FullBlurPPG.Activate()", "page.GetAnimatedProperty(Blur, 10, -1)", "FullBlurPPG.Show(5)",
                           "tool.OnLinkToViewer()", "tool.OnLinkToOperator()", "tool.GetAnimatedProperty(Blur, 10, -1)",
                           "tool.OnPenDown(button 1, 42, 24)", "viewer.InvalidateLayer(all)", "tool.OnRender()",
                           "tool.SetAnimatedProperty(Blur, 18, -1)", "tool.OnUnlinkFromOperator()"}) {
    EXPECT_NE(result.err.find(call), std::string::npos) << call;
  }
  EXPECT_EQ(result.err.find("SetAnimatedProperty"), result.err.rfind("SetAnimatedProperty")) << "once";
  EXPECT_NE(host::ReadTextFile(Path("after.json"), "job").find("\"Blur\": 18.0"), std::string::npos);
  EXPECT_EQ(host::NamesIn(folder_.path()), (std::set<std::string>{"after.json", "dragged.png", "drag.pen", "idle.png",
                                                                  "in.png", "job.json", "view.png"}));
  EXPECT_NE(Pixels("idle.png"), Pixels("dragged.png"));
  EXPECT_NE(Pixels("dragged.png"), Pixels("view.png"));
  // The saved job has the result of the drag, and the ring is no longer under the pen.
  EXPECT_EQ(Run({"view", "after.json", "again.png", "--hide-controls"}).exit, 0);
  EXPECT_EQ(Run({"job", "after.json"}).exit, 0);
}

TEST_F(ViewProgram, RefusesFramesThatNoViewHolds) {
  folder_.Write("big.json", R"({"input": {"file": "in.png"}, "output": {"file": "out.png"},
                                "project": {"userSize": [1e300, 1e300], "worldSize": [1e300, 1e300]}})");
  ExpectRefusal(
      {"view", "big.json", "view.png"}, 2,
      "the project's frame of 1e+300 x 1e+300 pixels is too large to be shown, expected at most 65536 a side");
}

TEST_F(ViewProgram, ShowsWhatARenderWrites) {
  EXPECT_EQ(Run({"view", "job.json", "view.png", "--hide-controls"}).exit, 0);
  EXPECT_EQ(Run({"job", "job.json"}).exit, 0);
  auto rendered = Pixels("out.png");
  for (std::size_t alpha = 3; alpha < rendered.size(); alpha += 4)
    rendered[alpha] = 255;
  EXPECT_EQ(Pixels("view.png"), rendered);
}

// Pictures get their names after the whole script has run.
TEST_F(ViewProgram, InterruptedItLeavesNothing) {
  std::string script;
  for (int i = 0; i < 2000; ++i)
    script += "set Blur " + std::to_string(i % 50 + 1) + "\nsnap a" + std::to_string(i) + ".png\n";
  folder_.Write("long.pen", script);
  const auto before = host::NamesIn(folder_.path());
  Process process(folder_.path(), Command({"view", "job.json", "view.png", "--pen", "long.pen"}));
  ASSERT_TRUE(WaitUntil([&] { return host::NamesIn(folder_.path()).size() > before.size() + 2; }));
  EXPECT_FALSE(Exists("a0.png"));
  process.Interrupt();
  const ProcessResult result = process.Wait();
  EXPECT_EQ(result.exit, 130);
  EXPECT_EQ(result.err, "vblur: interrupted\n");
  EXPECT_EQ(host::NamesIn(folder_.path()), before);
}

}  // namespace
}  // namespace vblur::cli
