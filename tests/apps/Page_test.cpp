// The command page: forms of a job's property pages, page scripts and saved jobs; page verbs in the viewer's scripts.
#include <nlohmann/json.hpp>

#include "host/base/TextFile.h"
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

using Json = nlohmann::json;

class PageProgram : public ProgramTest {
 protected:
  PageProgram() {
    WriteJob("job.json", "");
    WriteJob("paint.json", R"("use": "paint", "mask": {"file": "none.png"},)");
    WriteJob("transition.json", R"("use": "transition", "input2": {"file": "none.png"},)");
    WriteJob("generator.json", R"("use": "generator",)");
  }

  // Its pictures do not exist.
  void WriteJob(const std::string& name, const std::string& more) const {
    folder_.Write(name, R"({"version": 1, "input": {"file": "none.png"}, "output": {"file": "out/none.png"}, )" + more +
                            R"("frames": [0, 0], "properties": {"Blur": 24}})");
  }
  Json Properties(const std::string& job) const {
    return Json::parse(host::ReadTextFile(Path(job), "job"))["properties"];
  }
  std::string Printed(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "page");
    const ProcessResult result = Run(std::move(arguments));
    EXPECT_EQ(result.exit, 0);
    EXPECT_EQ(result.err, "");
    return result.out;
  }
  // What a script changes in job.json.
  Json After(const std::string& script, std::vector<std::string> options = {}) const {
    folder_.Write("a.page", script);
    options.insert(options.begin(), {"job.json", "--script", "a.page", "--save-job", "after.json", "--overwrite"});
    Printed(options);
    return Properties("after.json");
  }
};

TEST_F(PageProgram, PrintsTheFirstPageOfTheUse) {
  const std::string form =
      "V_Blur (FullBlurPPG) at 0\n"
      "  Method       [Blur]  Blur, Sharpen\n"
      "  Channels     [RGBA]  RGB, RGBA, Grey, Red, Green, Blue, Alpha, Luminance, Chroma, U, V\n"
      "  Blur         24      0 to 720\n"
      "  Aspect       0       -100 to 100\n"
      "  -- Blending --\n"
      "  Mix Back     [None]  None, Mix, Luminance, Chroma, Hue, Saturation, Value, Colour, Darken,\n"
      "                       Lighten, Screen, Multiply, Add, Add Over, Add Under, Subtract, Difference,\n"
      "                       Overlay, HardLight\n"
      "  Blend        50      0 to 100  (disabled)\n"
      "  Effect Gain  100     -100 to 500  (disabled)\n"
      "  Source Gain  100     -100 to 500  (disabled)\n"
      "  <Reset>\n";
  EXPECT_EQ(Printed({"job.json"}), form);
  EXPECT_EQ(Printed({"job.json", "--page", "fullblurppg"}), form);
  EXPECT_EQ(Printed({"paint.json"}), form);
  EXPECT_EQ(Printed({"transition.json"}),
            "V_Blur (TransitionBlurPPG) at 0\n"
            "  Method    [Blur]  Blur, Sharpen\n"
            "  Channels  [RGBA]  RGB, RGBA, Grey, Red, Green, Blue, Alpha, Luminance, Chroma, U, V\n"
            "  Blur      24      0 to 720\n"
            "  Aspect    0       -100 to 100\n"
            "  <Reset>\n");
}

TEST_F(PageProgram, PrintsEachPageOfAUse) {
  const auto title = [&](const std::string& job, const std::string& page) {
    const std::string form = Printed({job, "--page", page});
    return form.substr(0, form.find('\n'));
  };
  EXPECT_EQ(title("job.json", "crop"), "Cropping (crop) at 0");
  EXPECT_EQ(title("job.json", "HelpPPG"), "Help (HelpPPG) at 0");
  EXPECT_EQ(title("paint.json", "HelpPPG"), "Help (HelpPPG) at 0");
  EXPECT_EQ(title("transition.json", "transition"), "Transition (transition) at 0");
  EXPECT_EQ(title("transition.json", "crop"), "Cropping (crop) at 0");
  EXPECT_EQ(title("transition.json", "HelpPPG"), "Help (HelpPPG) at 0");
}

TEST_F(PageProgram, RefusesPagesThatTheUseLacks) {
  ExpectRefusal({"page", "job.json", "--page", "transition"}, 2,
                "--page: expected one of the pages FullBlurPPG, crop, HelpPPG, found \"transition\"");
  ExpectRefusal({"page", "paint.json", "--page", "crop"}, 2,
                "--page: expected one of the pages FullBlurPPG, HelpPPG, found \"crop\"");
  ExpectRefusal({"page", "transition.json", "--page", "FullBlurPPG"}, 2,
                "--page: expected one of the pages TransitionBlurPPG, transition, crop, HelpPPG, found "
                "\"FullBlurPPG\"");
  ExpectRefusal({"page", "job.json", "--page", "crops"}, 2,
                "--page: expected FullBlurPPG, TransitionBlurPPG, transition, HelpPPG or crop, found \"crops\"");
  ExpectRefusal({"page", "generator.json"}, 2, "generator.json: the effect has no pages in this use");
  ExpectRefusal({"page", "generator.json", "--page", "crop"}, 2,
                "--page: the effect has no pages in this use, found \"crop\"");
}

TEST_F(PageProgram, ShowsValuesAtATime) {
  const std::vector<std::string> keys{"job.json", "--set", "Blur=0:0,10:100"};
  const auto line = [&](const std::string& time) {
    auto arguments = keys;
    arguments.insert(arguments.end(), {"--time", time});
    const std::string form = Printed(arguments);
    const std::size_t at = form.find("\n  Blur ") + 1;
    return form.substr(at, form.find('\n', at) - at);
  };
  EXPECT_EQ(line("5"), "  Blur         50      0 to 720  (animated)");
  EXPECT_EQ(line("10"), "  Blur         100     0 to 720  (key)");
  EXPECT_EQ(line("3.333333"), "  Blur         33.3333  0 to 720  (animated)");
  ExpectRefusal({"page", "job.json", "--time", "soon"}, 2, "--time: expected a finite number, found \"soon\"");
  EXPECT_EQ(After("set Blur 7\n", {"--set", "Blur=0:0,10:100", "--time", "5"})["Blur"],
            Json::parse(R"({"keys": [[0.0, 0.0], [5.0, 7.0], [10.0, 100.0]]})"));
}

TEST_F(PageProgram, PlaysAScriptAndSavesTheJob) {
  EXPECT_EQ(After("set Blur 30\nscrub \"Aspect\" +5 -2 +1\nchoose \"Mix Back\" Screen\nset effect-gain 80\n"
                  "show crop\npick 200,40,10\ntick \"Display Cropped Source\"\n"),
            Json::parse(R"({"Blur": 30.0, "Aspect": 4.0, "Mix Back": "Screen", "Effect Gain": 80.0,
                            "Crop Colour R": 78.43137254901961, "Crop Colour G": 15.686274509803921,
                            "Crop Colour B": 3.9215686274509802, "Display Cropped": true})"));
  EXPECT_EQ(After("press Reset\nundo\n"), Properties("job.json"));
  EXPECT_EQ(After("press Reset\nundo\nredo\n"), Json()) << "all defaults";
  EXPECT_EQ(After("show HelpPPG\ntick \"Hide Overlay Controls\"\n"), Properties("job.json")) << "no part of the job";
  const Json before = Json::parse(host::ReadTextFile(Path("job.json"), "job"));
  Json after = Json::parse(host::ReadTextFile(Path("after.json"), "job"));
  EXPECT_EQ(after["input"], before["input"]);
  EXPECT_EQ(after["frames"], before["frames"]);
}

TEST_F(PageProgram, TheJobsOwnPropertiesAreNoStep) {
  folder_.Write("a.page", "undo\n");
  ExpectRefusal({"page", "job.json", "--script", "a.page"}, 2, "a.page:1: expected a step to undo, there is none");
}

TEST_F(PageProgram, PrintsWhereTheScriptSaysAndAtTheEnd) {
  folder_.Write("a.page", "print\nset Blur 30\nprint\nshow crop\n");
  const std::string out = Printed({"job.json", "--script", "a.page"});
  const std::size_t second = out.find("\n\nV_Blur (FullBlurPPG) at 0\n");
  const std::size_t third = out.find("\n\nCropping (crop) at 0\n");
  ASSERT_NE(second, std::string::npos) << out;
  ASSERT_NE(third, std::string::npos) << out;
  EXPECT_NE(out.substr(0, second).find("  Blur         24 "), std::string::npos);
  EXPECT_NE(out.substr(second, third - second).find("  Blur         30 "), std::string::npos);
  folder_.Write("b.page", "set Blur 30\nprint\n");
  const std::string once = Printed({"job.json", "--script", "b.page"});
  EXPECT_EQ(once.find("V_Blur"), once.rfind("V_Blur")) << "not twice";
  folder_.Write("empty.page", "# nothing\n");
  EXPECT_EQ(Printed({"job.json", "--script", "empty.page"}), Printed({"job.json"}));
}

// One line with file, line and what was expected; nothing is printed, not even what a script printed before.
TEST_F(PageProgram, RefusesWrongScripts) {
  const auto refuse = [&](const std::string& script, const std::string& line) {
    folder_.Write("a.page", "print\n" + script);
    ExpectRefusal({"page", "job.json", "--script", "a.page", "--save-job", "after.json"}, 2, "a.page:2: " + line);
  };
  refuse("jump 3",
         "expected show, set, scrub, choose, tick, untick, pick, press, time, undo, redo or print, found \"jump\"");
  refuse("set Blur", "expected \"set CONTROL NUMBER\", found \"set Blur\"");
  refuse("set Blurr 3", "expected a control of the page FullBlurPPG, found \"Blurr\"; did you mean \"Blur\"?");
  refuse("set Blend 3", "\"Blend\" takes no input, expected a control that is enabled");
  refuse("set Blur 1,5", "Blur: expected a decimal point and no commas, found \"1,5\"");
  refuse("choose Method Shapren",
         "Method: expected one of Blur, Sharpen, or a whole number from 0 to 1, found \"Shapren\"");
  refuse("tick Blur", "expected a check box, \"Blur\" is a number");
  refuse("pick 1,2,3", "expected a page with a colour chip, FullBlurPPG has none");
  refuse("show transition", "expected one of the pages FullBlurPPG, crop, HelpPPG, found \"transition\"");
  refuse("redo", "expected a step to redo, there is none");
  // Half a megabyte of words takes no time.
  std::string words = "set";
  for (int i = 0; i < 100'000; ++i)
    words += " Blur";
  folder_.Write("a.page", words + "\n");
  EXPECT_EQ(Run({"page", "job.json", "--script", "a.page"}).exit, 2);
  ExpectRefusal({"page", "job.json", "--script", "none.page"}, 3,
                "none.page: cannot read the page script: No such file or directory");
}

TEST_F(PageProgram, ReplacesNothingThatItReads) {
  folder_.Write("a.page", "set Blur 3\n");
  folder_.Write("old.json", "old");
  const auto refuse = [&](const std::string& file, std::vector<std::string> options, int exit,
                          const std::string& line) {
    options.insert(options.begin(), {"page", "job.json", "--script", "a.page", "--save-job", file});
    ExpectRefusal(options, exit, line);
  };
  refuse("job.json", {"--overwrite"}, 2, "--save-job: expected another name, \"job.json\" is read by this run");
  refuse("./a.page", {"--overwrite"}, 2, "--save-job: expected another name, \"./a.page\" is read by this run");
  refuse("none.png", {"--overwrite"}, 2, "--save-job: expected another name, \"none.png\" is read by this run");
  refuse("out/none.png", {"--overwrite"}, 2,
         "--save-job: expected another name, \"out/none.png\" is written by this run already");
  refuse("old.json", {}, 4, "old.json: cannot write: the file exists already; give --overwrite to replace it");
  refuse("none/after.json", {}, 4, "none/after.json: cannot write: the folder none does not exist");
  refuse("-", {}, 2, "--save-job: expected the name of a file, found -");
  EXPECT_EQ(host::ReadTextFile(Path("old.json"), "text"), "old");
  EXPECT_EQ(Run({"page", "job.json", "--script", "a.page", "--save-job", "old.json", "--overwrite"}).exit, 0);
  EXPECT_EQ(Properties("old.json")["Blur"], 3.0);
}

TEST_F(PageProgram, ReadsJobOrScriptFromTheStandardInput) {
  const auto from = [&](const std::string& file, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "page");
    return Run(std::move(arguments), InputFrom(Path(file)));
  };
  EXPECT_EQ(from("job.json", {"-"}).out, Printed({"job.json"}));
  folder_.Write("a.page", "show crop\nundo\n");
  const ProcessResult wrong = from("a.page", {"job.json", "--script", "-"});
  EXPECT_EQ(wrong.exit, 2);
  EXPECT_EQ(wrong.err, "vblur: standard input:2: expected a step to undo, there is none\n");
  const ProcessResult both = from("job.json", {"-", "--script", "-"});
  EXPECT_EQ(both.exit, 2);
  EXPECT_EQ(both.err, "vblur: --script: the standard input is the job file, expected a file\n");
}

TEST_F(PageProgram, PrintsToolTipsAndCalls) {
  const std::string tip = "\n  Blur         24      0 to 720\n      Amount to blur by (in pixels).\n";
  const ProcessResult tips = Run({"page", "job.json", "-v"});
  EXPECT_NE(tips.out.find(tip), std::string::npos) << tips.out;
  EXPECT_EQ(tips.err, "");
  folder_.Write("a.page", "set Blur 30\npress Reset\nundo\ntime 3\n");
  const ProcessResult calls = Run({"page", "job.json", "-vv", "--script", "a.page"});
  EXPECT_NE(calls.out.find("      Amount to blur by (in pixels).\n"), std::string::npos) << calls.out;
  std::size_t at = 0;
  for (const char* call :
       {"FullBlurPPG.CoCreateInstance() = 0x00000000", "FullBlurPPG.SetSite()", "FullBlurPPG.SetObjects(1)",
        "FullBlurPPG.GetPageInfo()", "page.GetAnimatedProperty(Blur, 24, -1)", "FullBlurPPG.Activate()",
        "FullBlurPPG.Refresh()", "FullBlurPPG.Show(5)", "page.SetAnimatedProperty(Blur, 30, -1)",
        "page.SetAnimatedProperty(Blur, 10, -1)", "page.SetPlainProperty(Mix Back, 0, -1)",
        "page.GetAnimatedProperty(Blur, 30, -1)", "FullBlurPPG.UpdateAnimatedControls(3)",
        "FullBlurPPG.Deactivate()"}) {
    const std::size_t next = calls.err.find(call, at);
    EXPECT_NE(next, std::string::npos) << call << " in\n" << calls.err.substr(at);
    at = next == std::string::npos ? at : next;
  }
}

TEST_F(PageProgram, RefusesJobsThatAreNone) {
  ExpectRefusal({"page"}, 2, "JOB is required; see vblur page --help");
  ExpectRefusal({"page", "none.json"}, 3, "none.json: cannot read the job file: No such file or directory");
  ExpectRefusal({"page", "job.json", "--set", "Blur=5000"}, 2, "--set: Blur: expected 0 to 720, found 5000");
}

// The viewer's scripts take page verbs between pen events.
class PageProgramView : public PageProgram {
 protected:
  PageProgramView() {
    MakePicture("in.png", 64, 48);
    folder_.Write("job.json", R"({"version": 1, "input": {"file": "in.png"}, "output": {"file": "out.png"},
                                  "frames": [0, 0], "properties": {"Blur": 10}})");
  }
};

TEST_F(PageProgramView, UndoesADragOfTheRingInThePicture) {
  folder_.Write("a.pen",
                "snap idle.png\nmove 42 24\ndown 42 24\nmove 50 24\nup 50 24\nmove 2 2\nsnap dragged.png\n"
                "undo\nsnap undone.png\nredo\nsnap redone.png\npress Reset\nundo\nprint\n");
  const ProcessResult result =
      Run({"view", "job.json", "view.png", "--page", "FullBlurPPG", "--pen", "a.pen", "--save-job", "after.json"});
  EXPECT_EQ(result.exit, 0) << result.err;
  EXPECT_NE(result.out.find("\n  Blur         18      0 to 720\n"), std::string::npos) << result.out;
  EXPECT_NE(Pixels("idle.png"), Pixels("dragged.png"));
  EXPECT_EQ(Pixels("undone.png"), Pixels("idle.png"));
  EXPECT_EQ(Pixels("redone.png"), Pixels("dragged.png"));
  EXPECT_EQ(Properties("after.json"), Json::parse(R"({"Blur": 18.0})"));
}

TEST_F(PageProgramView, ShowsAnotherPageInAScript) {
  folder_.Write("a.pen",
                "set Crop Left 25\nsnap ring.png\nshow crop\nsnap crop.png\npick 255,0,0\nchoose x-edge-method color\n"
                "tick \"Display Cropped Source\"\nsnap red.png\nprint\nshow FullBlurPPG\nprint\n");
  const ProcessResult result = Run({"view", "job.json", "view.png", "--pen", "a.pen"});
  EXPECT_EQ(result.exit, 0) << result.err;
  EXPECT_TRUE(result.out.starts_with("Cropping (crop) at 0\n  Display Cropped Source  [x]\n")) << result.out;
  EXPECT_NE(result.out.find("\n\nV_Blur (FullBlurPPG) at 0\n"), std::string::npos) << result.out;
  EXPECT_NE(Pixels("ring.png"), Pixels("crop.png"));
  EXPECT_NE(Pixels("crop.png"), Pixels("red.png"));
}

TEST_F(PageProgramView, OpensEveryPage) {
  for (const char* page : {"FullBlurPPG", "crop", "HelpPPG"}) {
    folder_.Write("a.pen", "print\n");
    const ProcessResult result = Run({"view", "job.json", "view.png", "--overwrite", "--page", page, "--pen", "a.pen"});
    EXPECT_EQ(result.exit, 0) << result.err;
    EXPECT_NE(result.out.find(std::string("(") + page + ") at 0\n"), std::string::npos) << result.out;
  }
}

TEST_F(PageProgramView, RefusesPagesThatTheUseLacks) {
  ExpectRefusal({"view", "job.json", "view.png", "--page", "transition"}, 2,
                "--page: expected one of the pages FullBlurPPG, crop, HelpPPG, found \"transition\"");
  folder_.Write("generator.json",
                R"({"use": "generator", "input": {"file": "in.png"}, "output": {"file": "out.png"}})");
  ExpectRefusal({"view", "generator.json", "view.png", "--page", "crop"}, 2,
                "--page: the effect has no pages in this use, found \"crop\"");
  // The frame alone.
  EXPECT_EQ(Run({"view", "generator.json", "view.png"}).exit, 0);
  EXPECT_EQ(Run({"view", "generator.json", "hidden.png", "--hide-controls"}).exit, 0);
  EXPECT_EQ(Pixels("view.png"), Pixels("hidden.png"));
  folder_.Write("a.pen", "print\npress Reset\n");
  ExpectRefusal({"view", "generator.json", "other.png", "--pen", "a.pen"}, 2,
                "a.pen:2: expected \"show PAGE\" first, no page is open");
}

TEST_F(PageProgramView, RefusesWrongPageVerbsAndPrintsNothing) {
  const auto refuse = [&](const std::string& event, const std::string& line) {
    folder_.Write("a.pen", "print\nsnap a.png\n" + event + "\n");
    ExpectRefusal({"view", "job.json", "view.png", "--pen", "a.pen", "--save-job", "after.json"}, 2,
                  "a.pen:3: " + line);
  };
  refuse("show transition", "expected one of the pages FullBlurPPG, crop, HelpPPG, found \"transition\"");
  refuse("undo", "expected a step to undo, there is none");
  refuse("press Rest", "expected a control of the page FullBlurPPG, found \"Rest\"; did you mean \"Reset\"?");
  refuse("undo it", "expected \"undo\", found \"undo it\"");
  refuse("jump", "expected move, down, up, time, set, snap or an event of a property page, found \"jump\"");
  const ProcessResult both = Run({"view", "-", "view.png", "--pen", "-"}, InputFrom(Path("job.json")));
  EXPECT_EQ(both.exit, 2);
  EXPECT_EQ(both.err, "vblur: --pen: the standard input is the job file, expected a file\n");
}

}  // namespace
}  // namespace vblur::cli
