#include <set>

#include "tests/apps/ProgramTest.h"

#include <windows.h>

namespace vblur::cli {
namespace {

class InterruptionOfConsole : public ProgramTest {};

TEST_F(InterruptionOfConsole, CtrlBreakLeavesWholeFilesOnly) {
  MakePicture("in.png", 600, 400);
  Process program(folder_.path(), Command({"render", "in.png", "out.%04d.png", "--frames", "1-2000", "--blur", "3"}));
  ASSERT_TRUE(WaitUntil([&] { return Exists("out.0003.png"); }));
  program.Break();
  const auto result = program.Wait();
  EXPECT_EQ(result.exit, 130);
  EXPECT_EQ(result.err, "vblur: interrupted\n");
  EXPECT_FALSE(Exists("out.2000.png"));
  EXPECT_FALSE(HasParts());
  // The next run skips what the first has named, and finds nothing to say of it.
  const auto next =
      Run({"render", "in.png", "out.%04d.png", "--frames", "1-3", "--blur", "3", "--skip-existing", "-v"});
  EXPECT_EQ(next.exit, 0);
  EXPECT_EQ(next.err.find("rendered again"), std::string::npos) << next.err;
}

TEST_F(InterruptionOfConsole, ItsEndStopsTheWorkToo) {
  MakePicture("in.png", 600, 400);
  Process program(folder_.path(), Command({"render", "in.png", "out.%04d.png", "--frames", "1-2000"}));
  ASSERT_TRUE(WaitUntil([&] { return Exists("out.0003.png"); }));
  program.CloseConsole();
  const auto result = program.Wait();
  EXPECT_EQ(result.exit, 129);
  EXPECT_EQ(result.err, "vblur: interrupted\n");
  EXPECT_FALSE(Exists("out.2000.png"));
  EXPECT_FALSE(HasParts());
}

TEST_F(InterruptionOfConsole, CtrlCThatIsIgnoredStaysIgnored) {
  MakePicture("in.png", 600, 400);
  // Children inherit it.
  SetConsoleCtrlHandler(nullptr, TRUE);
  Process program(folder_.path(), Command({"render", "in.png", "out.%04d.png", "--frames", "1-12"}));
  SetConsoleCtrlHandler(nullptr, FALSE);
  ASSERT_TRUE(WaitUntil([&] { return Exists("out.0002.png"); }));
  program.Interrupt();
  EXPECT_EQ(program.Wait().exit, 0);
  EXPECT_TRUE(Exists("out.0012.png"));
}

// Nothing comes, nothing ends.
TEST_F(InterruptionOfConsole, WaitingForTheInputCanBeInterrupted) {
  Process::Setup silent;
  silent.isPiped = true;
  Process program(folder_.path(), Command({"-", "out.png"}), silent);
  Sleep(1000);
  const auto start = std::chrono::steady_clock::now();
  program.Interrupt();
  const auto result = program.Wait();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
  EXPECT_EQ(result.exit, 130);
  EXPECT_EQ(result.err, "vblur: interrupted\n");
  EXPECT_EQ(host::NamesIn(folder_.path()), std::set<std::string>{});
}

}  // namespace
}  // namespace vblur::cli
