#include "tests/apps/PlatformTexts.h"
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class Interruption : public ProgramTest {};

TEST_F(Interruption, CtrlCLeavesWholeFilesOnly) {
  MakePicture("in.png", 600, 400);
  Process program(folder_.path(), Command({"render", "in.png", "out.%04d.png", "--frames", "1-2000", "--blur", "3"}));
  ASSERT_TRUE(WaitUntil([&] { return Exists("out.0003.png"); }));
  program.Interrupt();
  const auto result = program.Wait();
  EXPECT_EQ(result.exit, 130);
  EXPECT_EQ(result.err, "vblur: interrupted\n");
  EXPECT_FALSE(Exists("out.2000.png"));
  for (const std::string& name : host::NamesIn(folder_.path())) {
    ASSERT_EQ(name.find(".part"), std::string::npos) << name;
    host::HostImage image;
    EXPECT_NO_THROW(host::PictureReader().ReadColour(Path(name), 8, image)) << name;
  }
}

// Also where a format's library does not ask whether to go on.
TEST_F(Interruption, EndsWithinASecondWhateverIsWritten) {
  MakePicture("in.png", 3000, 2000);
  for (const std::string& format : kFormats) {
    const std::string output = "out." + format;
    Process program(folder_.path(), Command({"render", "in.png", output}));
    ASSERT_TRUE(WaitUntil([&] { return HasParts() || Exists(output); })) << format;
    const auto start = std::chrono::steady_clock::now();
    program.Interrupt();
    const auto result = program.Wait();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1000)) << format;
    EXPECT_FALSE(HasParts());
    EXPECT_TRUE(result.exit == 130 || (result.exit == 0 && Exists(output))) << format << result.exit;
    std::filesystem::remove(Path(output));
  }
}

// The first stops it after a moment, since it is held up. A busy machine may take as long for the second, but not
// always.
TEST_F(Interruption, TheSecondCtrlCEndsItAtOnceWhateverHoldsItUp) {
  MakePicture("in.png", 600, 400);
  Process::Setup unread;
  unread.unread = 1;
  std::chrono::steady_clock::duration shortest = std::chrono::hours(1);
  for (int attempt = 0; attempt < 3; ++attempt) {
    Process program(folder_.path(), Command({"in.png", "-"}), unread);
    ASSERT_TRUE(WaitUntil([&] { return program.UnreadBytes() > 0; }));
    const auto start = std::chrono::steady_clock::now();
    program.Interrupt();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    program.Interrupt();
    const auto result = program.Wait();
    shortest = std::min(shortest, std::chrono::steady_clock::now() - start);
    EXPECT_EQ(result.exit, 130);
    EXPECT_EQ(result.err, "vblur: interrupted\n");
    EXPECT_EQ(host::NamesIn(folder_.path()), std::set<std::string>{"in.png"});
  }
  EXPECT_LT(shortest, std::chrono::milliseconds(600));
}

TEST_F(Interruption, AKilledProgramLeavesTheOldFileOrTheNewOne) {
  MakePicture("in.png", 900, 700);
  MakePicture("old.png", 900, 700);
  int caught = 0;
  for (int attempt = 0; attempt < 4; ++attempt) {
    std::filesystem::remove(Path("out.png"));
    std::filesystem::copy_file(Path("old.png"), Path("out.png"));
    Process program(folder_.path(), Command({"render", "in.png", "out.png", "--blur", "0", "--overwrite"}));
    WaitUntil([&] { return HasParts(); });
    std::this_thread::sleep_for(std::chrono::milliseconds(5 * attempt));
    program.Kill();
    if (program.Wait().isKilled) ++caught;
    const auto now = Pixels("out.png");
    EXPECT_TRUE(now == Pixels("old.png") || now == Pixels("in.png"));
    for (const std::string& name : host::NamesIn(folder_.path())) {
      if (name.find(".part.") != std::string::npos) std::filesystem::remove(Path(name));
    }
  }
  EXPECT_GT(caught, 0) << "the program was never killed while it wrote";
}

}  // namespace
}  // namespace vblur::cli
