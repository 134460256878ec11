// Page scripts: what a line means, and what is said of a wrong one.
#include "host/pages/PageEvent.h"

#include <gtest/gtest.h>

#include "tests/support/host/FailureOf.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

using Verb = PageEvent::Kind;
using StepSizes = std::vector<std::int32_t>;

PageEvent ReadLine(const std::string& line) {
  return ReadPageEvent(line, "a.page:7");
}

std::string LineRefusal(const std::string& line) {
  return UsageFailureOf([&] { ReadLine(line); });
}

// The name and the text behind it.
void ExpectNameAndText(const std::string& line, Verb kind, const std::string& name, const std::string& text) {
  SCOPED_TRACE(line);
  const PageEvent event = ReadLine(line);
  EXPECT_EQ(event.kind, kind);
  EXPECT_EQ(event.name, name);
  EXPECT_EQ(event.text, text);
  EXPECT_EQ(event.place, "a.page:7");
}

TEST(PageEvent, NamesAControlAndSaysWhatIsDone) {
  ExpectNameAndText("show crop", Verb::Show, "crop", "");
  ExpectNameAndText("set Blur 24", Verb::Set, "Blur", "24");
  ExpectNameAndText("set Blur += 5", Verb::Set, "Blur", "+= 5");
  ExpectNameAndText("set Blur (3 + 4) * 2", Verb::Set, "Blur", "(3 + 4) * 2");
  ExpectNameAndText("choose Method Sharpen", Verb::Choose, "Method", "Sharpen");
  ExpectNameAndText("tick Display Cropped Source", Verb::Tick, "Display Cropped Source", "");
  ExpectNameAndText("untick Display Cropped Source", Verb::Untick, "Display Cropped Source", "");
  ExpectNameAndText("press Online Help", Verb::Press, "Online Help", "");
}

TEST(PageEvent, TakesNamesWithSpacesInQuotesOrAsTheyAre) {
  ExpectNameAndText("set \"Effect Gain\" 5", Verb::Set, "Effect Gain", "5");
  ExpectNameAndText("set Effect Gain 5", Verb::Set, "Effect Gain", "5");
  ExpectNameAndText("set crop color g 20", Verb::Set, "crop color g", "20");
  ExpectNameAndText("set effect-gain 5", Verb::Set, "effect-gain", "5");
  ExpectNameAndText("choose Mix Back Add Over", Verb::Choose, "Mix Back", "Add Over");
  ExpectNameAndText("choose \"Mix Back\" \"Add Over\"", Verb::Choose, "Mix Back", "Add Over");
  ExpectNameAndText("press \"Reset\"", Verb::Press, "Reset", "");
  ExpectNameAndText("set \"Blur\"24", Verb::Set, "Blur", "24");
  ExpectNameAndText("set Bogus Name 5", Verb::Set, "Bogus", "Name 5");
  ExpectNameAndText("set \"\" 5", Verb::Set, "", "5");
}

TEST(PageEvent, TakesVerbsInAnyCaseAndSpacesAnywhere) {
  ExpectNameAndText("  SET\tBlur   24 \r", Verb::Set, "Blur", "24");
  ExpectNameAndText("Choose \"mix back\"\tscreen", Verb::Choose, "mix back", "screen");
  EXPECT_EQ(ReadLine("uNDO").kind, Verb::Undo);
  EXPECT_EQ(ReadLine("redo").kind, Verb::Redo);
  EXPECT_EQ(ReadLine(" print ").kind, Verb::Print);
}

TEST(PageEvent, EndsALineAtAComment) {
  ExpectNameAndText("set Blur 24 # or more", Verb::Set, "Blur", "24");
  ExpectNameAndText("set Blur 24# or more", Verb::Set, "Blur", "24");
  ExpectNameAndText("press \"Take #1\" # yes", Verb::Press, "Take #1", "");
  EXPECT_EQ(ReadLine("undo# that").kind, Verb::Undo);
}

TEST(PageEvent, ScrubsByStepsOfThreeSizes) {
  const auto expect = [](const std::string& line, const std::string& name, NumberStep step, const StepSizes& steps) {
    SCOPED_TRACE(line);
    const PageEvent event = ReadLine(line);
    EXPECT_EQ(event.kind, Verb::Scrub);
    EXPECT_EQ(event.name, name);
    EXPECT_EQ(event.step, step);
    EXPECT_EQ(event.steps, steps);
  };
  expect("scrub Aspect +5 -2 +1", "Aspect", NumberStep::Normal, {5, -2, 1});
  expect("scrub Aspect 5", "Aspect", NumberStep::Normal, {5});
  expect("scrub \"Crop Left\" fine 7", "Crop Left", NumberStep::Fine, {7});
  expect("scrub Crop Left coarse -1 0", "Crop Left", NumberStep::Coarse, {-1, 0});
  expect("scrub source-gain FINE 1", "source-gain", NumberStep::Fine, {1});
  expect("scrub Blur 2147483647 -2147483648", "Blur", NumberStep::Normal, {2147483647, -2147483647 - 1});
}

TEST(PageEvent, PicksAColourAndSetsATime) {
  using Colour = std::array<std::int32_t, 3>;
  EXPECT_EQ(ReadLine("pick 200,40,10").colour, (Colour{200, 40, 10}));
  EXPECT_EQ(ReadLine("pick 0, 255 ,+7").colour, (Colour{0, 255, 7}));
  EXPECT_EQ(ReadLine("pick 1 2 3").colour, (Colour{1, 2, 3}));
  EXPECT_EQ(ReadLine("time 12").time, 12.0);
  EXPECT_EQ(ReadLine("time -0.5").time, -0.5);
  EXPECT_EQ(ReadLine("time +1e3").time, 1000.0);
}

TEST(PageEvent, SaysWhatItExpects) {
  EXPECT_EQ(LineRefusal("jump Blur"),
            "a.page:7: expected show, set, scrub, choose, tick, untick, pick, press, time, undo, redo or print, found "
            "\"jump\"");
  for (const auto& [line, form] : {std::pair<std::string, std::string>{"show", "show PAGE"},
                                   {"tick", "tick BOX"},
                                   {"untick", "untick BOX"},
                                   {"press", "press BUTTON"},
                                   {"set", "set CONTROL NUMBER"},
                                   {"set Blur", "set CONTROL NUMBER"},
                                   {"choose Method", "choose LIST ENTRY"},
                                   {"scrub Aspect", "scrub CONTROL [fine|coarse] STEPS..."},
                                   {"pick", "pick R,G,B"},
                                   {"time", "time T"},
                                   {"time 1 2", "time T"},
                                   {"undo now", "undo"},
                                   {"redo 2", "redo"},
                                   {"print crop", "print"}}) {
    EXPECT_EQ(LineRefusal(line), "a.page:7: expected \"" + form + "\", found \"" + line + "\"");
  }
}

TEST(PageEvent, SaysWhichNumberIsWrong) {
  EXPECT_EQ(LineRefusal("scrub Aspect fast 5"), "a.page:7: expected a whole number of steps, found \"fast\"");
  EXPECT_EQ(LineRefusal("scrub Aspect 1.5"), "a.page:7: expected a whole number of steps, found \"1.5\"");
  EXPECT_EQ(LineRefusal("scrub Aspect 2147483648"), "a.page:7: expected a whole number of steps, found \"2147483648\"");
  EXPECT_EQ(LineRefusal("scrub Aspect +-1"), "a.page:7: expected a whole number of steps, found \"+-1\"");
  EXPECT_EQ(LineRefusal("scrub Aspect fine"), "a.page:7: expected a number of steps behind \"fine\"");
  EXPECT_EQ(LineRefusal("pick 1,2"), "a.page:7: expected three numbers R,G,B, found \"1,2\"");
  EXPECT_EQ(LineRefusal("pick 1,2,3,4"), "a.page:7: expected three numbers R,G,B, found \"1,2,3,4\"");
  EXPECT_EQ(LineRefusal("pick 1,2,x"), "a.page:7: expected a whole number from 0 to 255, found \"x\"");
  EXPECT_EQ(LineRefusal("pick 1,256,3"), "a.page:7: expected a whole number from 0 to 255, found \"256\"");
  EXPECT_EQ(LineRefusal("pick -1,2,3"), "a.page:7: expected a whole number from 0 to 255, found \"-1\"");
  EXPECT_EQ(LineRefusal("time soon"), "a.page:7: expected a number, found \"soon\"");
  EXPECT_EQ(LineRefusal("time nan"), "a.page:7: expected a number, found \"nan\"");
  EXPECT_EQ(LineRefusal("time 1e400"), "a.page:7: expected a number, found \"1e400\"");
}

TEST(PageEvent, RefusesQuotesThatDoNotClose) {
  EXPECT_EQ(LineRefusal("set \"Blur 24"), R"(a.page:7: expected a closing quote, found "\"Blur 24")");
  EXPECT_EQ(LineRefusal("press \""), R"(a.page:7: expected a closing quote, found "\"")");
}

TEST(PageEvent, IsToldByItsVerb) {
  for (const char* line : {"undo", "  press Reset", "PRINT", "choose", "set Blur 3", "time"})
    EXPECT_TRUE(IsPageEvent(line)) << line;
  for (const char* line : {"", "  ", "# undo", "undone", "move 1 2", "\"undo\""})
    EXPECT_FALSE(IsPageEvent(line)) << line;
}

TEST(PageEvent, CountsTheLinesOfAScript) {
  const auto events = ParsePageScript("# first\n\nset Blur 1\r\n  # more\nundo\n\nprint", "dir/a.page");
  ASSERT_EQ(events.size(), 3u);
  EXPECT_EQ(events[0].place, "dir/a.page:3");
  EXPECT_EQ(events[1].place, "dir/a.page:5");
  EXPECT_EQ(events[2].place, "dir/a.page:7");
  EXPECT_TRUE(ParsePageScript("", "a").empty());
  EXPECT_TRUE(ParsePageScript("\n \n#", "a").empty());
  EXPECT_EQ(UsageFailureOf([] { ParsePageScript("undo\n\nundo it\n", "b.page"); }),
            "b.page:3: expected \"undo\", found \"undo it\"");
}

TEST(PageEvent, ScriptsAreReadFromFiles) {
  const ScratchFolder folder;
  const auto file = folder.Write("a.page", "undo\nset \"Blur\n");
  EXPECT_EQ(UsageFailureOf([&] { ReadPageScript(file); }),
            file.string() + R"(:2: expected a closing quote, found "\"Blur")");
  const auto missing = CaughtFailure([&] { ReadPageScript(folder.path() / "none"); });
  ASSERT_TRUE(missing);
  EXPECT_EQ(missing->Code(), ExitCode::CannotRead);
  EXPECT_EQ(missing->what(),
            (folder.path() / "none").string() + ": cannot read the page script: No such file or directory");
}

}  // namespace
}  // namespace vblur::host
