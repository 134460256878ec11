// Signals other than that of Ctrl-C.
#include "tests/apps/ProgramTest.h"
#include "tests/support/process/Process_posix.h"

namespace vblur::cli {
namespace {

class InterruptionBySignals : public ProgramTest {};

// Whether a process has the file open; `files` is the folder of its descriptors.
bool IsOpen(const std::filesystem::path& files, const std::string& name) {
  std::error_code error;
  std::filesystem::directory_iterator each(files, error);
  for (; !error && each != std::filesystem::directory_iterator(); each.increment(error)) {
    std::error_code gone;
    if (std::filesystem::read_symlink(each->path(), gone).filename() == name) return true;
  }
  return false;
}

TEST_F(InterruptionBySignals, OtherSignalsStopItAlike) {
  MakePicture("in.png", 600, 400);
  for (const int signal : {SIGTERM, SIGHUP}) {
    Process program(folder_.path(), Command({"render", "in.png", "out.%04d.png", "--frames", "1-2000", "--overwrite"}));
    ASSERT_TRUE(WaitUntil([&] { return Exists("out.0003.png"); }));
    program.Send(signal);
    const auto result = program.Wait();
    EXPECT_EQ(result.exit, 128 + signal);
    EXPECT_EQ(result.err, "vblur: interrupted\n");
    EXPECT_FALSE(HasParts());
    for (const std::string& name : host::NamesIn(folder_.path())) {
      if (name != "in.png") std::filesystem::remove(Path(name));
    }
  }
}

TEST_F(InterruptionBySignals, TheSecondSignalEndsItAtOnce) {
  MakePicture("in.png", 3000, 2000);
  Process program(folder_.path(), Command({"render", "in.png", "out.webp"}));
  ASSERT_TRUE(WaitUntil([&] { return HasParts(); }));
  const auto start = std::chrono::steady_clock::now();
  program.Send(SIGINT);
  program.Send(SIGTERM);
  const auto result = program.Wait();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
  // Either may arrive first.
  EXPECT_TRUE(result.exit == 130 || result.exit == 128 + SIGTERM) << result.exit;
  EXPECT_EQ(result.err, "vblur: interrupted\n");
  EXPECT_EQ(host::NamesIn(folder_.path()), std::set<std::string>{"in.png"});
}

TEST_F(InterruptionBySignals, IgnoredSignalsStayIgnored) {
  MakePicture("in.png", 600, 400);
  for (const int signal : {SIGINT, SIGHUP, SIGTERM}) {
    Process program(folder_.path(), Command({"render", "in.png", "out.%04d.png", "--frames", "1-12", "--overwrite"}),
                    Ignoring(signal));
    ASSERT_TRUE(WaitUntil([&] { return Exists("out.0002.png"); }));
    program.Send(signal);
    EXPECT_EQ(program.Wait().exit, 0) << signal;
    EXPECT_TRUE(Exists("out.0012.png"));
    std::filesystem::remove(Path("out.0002.png"));
  }
}

TEST_F(InterruptionBySignals, EndsWithinASecondWhileALargeFileIsRead) {
  ASSERT_EQ(Run({"chart", "in.png", "--size", "9000x6000"}).exit, 0);
  ASSERT_EQ(Run({"in.png", "in.jpg", "--no-sync", "-q"}).exit, 0);
  for (const std::string input : {"in.png", "in.jpg"}) {
    Process program(folder_.path(), Command({"render", input, "out.png"}));
    const std::filesystem::path files = "/proc/" + std::to_string(program.Id()) + "/fd";
    // Its header is looked at before, for a moment.
    int polls = 0;
    ASSERT_TRUE(WaitUntil([&] { return (polls = IsOpen(files, input) ? polls + 1 : 0) > 30; })) << input;
    const auto start = std::chrono::steady_clock::now();
    program.Send(SIGINT);
    const auto result = program.Wait();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1000)) << input;
    EXPECT_EQ(result.exit, 130) << input;
    EXPECT_EQ(result.err, "vblur: interrupted\n") << input;
    EXPECT_EQ(host::NamesIn(folder_.path()), (std::set<std::string>{"in.jpg", "in.png"}));
  }
}

}  // namespace
}  // namespace vblur::cli
