// A job's effect with its pages.
#include "host/pages/PageSession.h"

#include <gtest/gtest.h>

#include "tests/host/pages/PagedEffect.h"
#include "tests/support/host/FailureOf.h"

namespace vblur::host {
namespace {

TEST(PageSession, HasThePropertiesOfTheJobAndNothingToUndo) {
  Job job;
  job.properties.Set(PropertyNamed("Blur").guid, Curve{{{0.0, 1.0}, {4.0, 9.0}}});
  job.properties.Set(PropertyNamed("Mask Red").guid, 0.0);
  job.properties.Set(PropertyNamed("Crop Left").guid, 12.5);
  PagedEffect user(job, 2.0);
  EXPECT_EQ(user.session.Properties(), job.properties);
  EXPECT_FALSE(user.session.History().CanUndo());
  EXPECT_EQ(user.session.Pages().CurrentTime(), 2.0);
  EXPECT_EQ(user.session.Form(true), "") << "no page is open";
}

TEST(PageSession, ReturnsThePropertiesAfterTheScript) {
  PagedEffect user;
  user.Do("show FullBlurPPG\nset Blur 24\nset Aspect 5\nundo");
  PropertyStore expected;
  expected.Set(PropertyNamed("Blur").guid, 24.0);
  EXPECT_EQ(user.session.Properties(), expected);
}

TEST(PageSession, ReadsNoPictures) {
  Job job;
  job.folder = "/none";
  job.input.emplace().file = "none.png";
  job.output.file = "none/out.png";
  PagedEffect user(job);
  user.Do("show crop\nset \"Crop Left\" 3");
  EXPECT_EQ(user.ValueAt("Crop Left"), 3.0);
}

TEST(PageSession, PrintsTheFrontPageWithItsTime) {
  PagedEffect user;
  user.Do("print");
  user.Do("show HelpPPG\ntime 0.5");
  EXPECT_TRUE(user.session.Form(false).starts_with("Help (HelpPPG) at 0.5\n")) << user.session.Form(false);
  std::int32_t prints = 0;
  user.session.OnPrint([&] { ++prints; });
  user.Do("print\nprint");
  EXPECT_EQ(prints, 2);
}

TEST(PageSession, NotesEveryCall) {
  std::vector<std::string> lines;
  CallTrace trace([&](const std::string& line) { lines.push_back(line.substr(0, line.find(" ="))); });
  {
    PagedEffect user({}, 3.0, &trace);
    lines.clear();
    user.Do("show FullBlurPPG");
    EXPECT_EQ(lines.front(), "FullBlurPPG.CoCreateInstance()");
    EXPECT_EQ(lines.back(), "FullBlurPPG.Show(5)");
    lines.clear();
    user.Do("set Blur 24");
    EXPECT_EQ(std::ranges::count(lines, "page.SetAnimatedProperty(Blur, 24, -1)"), 1);
    lines.clear();
    user.Do("time 4");
    EXPECT_EQ(lines.back(), "FullBlurPPG.UpdateAnimatedControls(4)");
    lines.clear();
    user.Do("show crop");
    EXPECT_EQ(lines[lines.size() - 2], "FullBlurPPG.Show(0)");
    EXPECT_EQ(lines.back(), "crop.Show(5)");
    lines.clear();
  }
  EXPECT_EQ(lines, (std::vector<std::string>{"crop.Deactivate()", "FullBlurPPG.Deactivate()"}));
}

}  // namespace
}  // namespace vblur::host
