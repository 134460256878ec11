// Runs that are killed, and runs beside each other: what has a name is whole.
#include <cstdlib>
#include <random>

#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

constexpr int kFrames = 24;

class KilledRuns : public ProgramTest {
 protected:
  void SetUp() override {
    MakePicture("in.png", 240, 160);
    std::filesystem::create_directory(Path("out"));
    ASSERT_EQ(Run(Sequence("expected.png", {})).exit, 0);
    expected_ = host::Bytes(Path("expected.png"));
    std::filesystem::remove(Path("expected.png"));
  }

  static std::vector<std::string> Sequence(const std::string& output, const std::vector<std::string>& more) {
    std::vector<std::string> arguments = {"render", "in.png", output, "--blur", "12"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }
  static std::vector<std::string> Sequence(const std::vector<std::string>& more) {
    std::vector<std::string> all = {"--frames", "1-" + std::to_string(kFrames)};
    all.insert(all.end(), more.begin(), more.end());
    return Sequence("out/%03d.png", all);
  }

  // Returns how many outputs there are.
  int ExpectWholeFiles() const {
    int count = 0;
    for (const std::string& name : host::NamesIn(Path("out"))) {
      if (name.find(".part") != std::string::npos) continue;
      EXPECT_EQ(host::Bytes(Path("out/" + name)), expected_) << name;
      ++count;
    }
    return count;
  }

  void ExpectAllAndNoParts() const {
    EXPECT_EQ(ExpectWholeFiles(), kFrames);
    EXPECT_EQ(host::NamesIn(Path("out")).size(), static_cast<std::size_t>(kFrames));
  }

  std::string expected_;
};

// VBLUR_KILLS sets how often.
TEST_F(KilledRuns, LeaveWholeFilesWhichTheNextRunCompletes) {
  const char* const asked = std::getenv("VBLUR_KILLS");
  const int kills = asked != nullptr ? std::atoi(asked) : 8;
  std::mt19937 random(14);
  int caught = 0;
  for (int kill = 0; kill < kills; ++kill) {
    {
      Process program(folder_.path(), Command(Sequence({})));
      std::this_thread::sleep_for(std::chrono::microseconds(random() % 400'000));
      program.Send(SIGKILL);
      if (program.Wait().signal == SIGKILL) ++caught;
    }
    ExpectWholeFiles();
    const auto result = Run(Sequence({"--skip-existing"}));
    ASSERT_EQ(result.exit, 0) << result.err;
    ExpectAllAndNoParts();
    for (const std::string& name : host::NamesIn(Path("out")))
      std::filesystem::remove(Path("out/" + name));
  }
  EXPECT_GT(caught, 0) << "the program was never killed";
}

TEST_F(KilledRuns, TwoAtATimeBothEnd) {
  for (const std::string choice : {"--overwrite", "--skip-existing"}) {
    Process one(folder_.path(), Command(Sequence({choice})));
    Process other(folder_.path(), Command(Sequence({choice})));
    const auto first = one.Wait();
    const auto second = other.Wait();
    if (choice == "--overwrite") {
      EXPECT_EQ(first.exit, 0) << first.err;
      EXPECT_EQ(second.exit, 0) << second.err;
      ExpectAllAndNoParts();
    } else {
      // A frame that the other one has named in the meantime is not replaced.
      EXPECT_TRUE(first.exit == 0 || first.exit == 4) << first.err;
      EXPECT_TRUE(second.exit == 0 || second.exit == 4) << second.err;
      ExpectWholeFiles();
    }
    for (const std::string& name : host::NamesIn(Path("out")))
      std::filesystem::remove(Path("out/" + name));
  }
}

}  // namespace
}  // namespace vblur::cli
