// Runs that are killed, and runs beside each other: what has a name is whole.
#include <cstdlib>
#include <map>
#include <random>
#include <set>

#include "tests/apps/PlatformTexts.h"
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

constexpr int kFrames = 24;

class KilledRuns : public ProgramTest {
 protected:
  void SetUp() override {
    MakePicture("in.png", 240, 160);
    for (const char* folder : {"out", "expected"})
      std::filesystem::create_directory(Path(folder));
    ASSERT_EQ(Run(SequenceInto("expected", {})).exit, 0);
    for (const std::string& name : host::NamesIn(Path("expected")))
      expected_[name] = host::Bytes(Path("expected/" + name));
    ASSERT_EQ(expected_.size(), static_cast<std::size_t>(kFrames));
    std::set<std::string> different;
    for (const auto& [name, bytes] : expected_)
      different.insert(bytes);
    ASSERT_EQ(different.size(), expected_.size()) << "a frame under another's name would pass";
  }

  // The blur grows from frame to frame.
  static std::vector<std::string> SequenceInto(const std::string& folder, const std::vector<std::string>& more) {
    const std::string last = std::to_string(kFrames - 1);
    std::vector<std::string> all = {"render",
                                    "in.png",
                                    folder + "/%03d.png",
                                    "--blur",
                                    "0:2," + last + ":25",
                                    "--frames",
                                    "1-" + std::to_string(kFrames)};
    all.insert(all.end(), more.begin(), more.end());
    return all;
  }
  static std::vector<std::string> Sequence(const std::vector<std::string>& more) { return SequenceInto("out", more); }

  // Returns how many outputs there are.
  int ExpectWholeFiles() const {
    int count = 0;
    for (const std::string& name : host::NamesIn(Path("out"))) {
      if (name.find(".part") != std::string::npos) continue;
      const auto frame = expected_.find(name);
      EXPECT_TRUE(frame != expected_.end() && host::Bytes(Path("out/" + name)) == frame->second) << name;
      ++count;
    }
    return count;
  }

  void ExpectAllAndNoParts() const {
    EXPECT_EQ(ExpectWholeFiles(), kFrames);
    EXPECT_EQ(host::NamesIn(Path("out")).size(), static_cast<std::size_t>(kFrames));
  }

  std::map<std::string, std::string> expected_;
};

// VBLUR_KILLS sets how often.
TEST_F(KilledRuns, LeaveWholeFilesWhichTheNextRunCompletes) {
  const char* const asked = std::getenv("VBLUR_KILLS");
  const int kills = asked != nullptr ? std::atoi(asked) : kShortRuns ? 8 : 4;
  std::mt19937 random(14);
  int caught = 0;
  for (int kill = 0; kill < kills; ++kill) {
    {
      Process program(folder_.path(), Command(Sequence({})));
      std::this_thread::sleep_for(std::chrono::microseconds(random() % 400'000));
      program.Kill();
      if (program.Wait().isKilled) ++caught;
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

// Of --skip-existing, too: a frame that the other one has named in the meantime counts as existing.
TEST_F(KilledRuns, TwoAtATimeBothEnd) {
  for (const std::string choice : {"--overwrite", "--skip-existing"}) {
    for (int round = 0; round < (kShortRuns ? 3 : 1); ++round) {
      SCOPED_TRACE(choice);
      Process one(folder_.path(), Command(Sequence({choice})));
      Process other(folder_.path(), Command(Sequence({choice})));
      const auto first = one.Wait();
      const auto second = other.Wait();
      EXPECT_EQ(first.exit, 0) << first.err;
      EXPECT_EQ(second.exit, 0) << second.err;
      ExpectAllAndNoParts();
      for (const std::string& name : host::NamesIn(Path("out")))
        std::filesystem::remove(Path("out/" + name));
    }
  }
}

}  // namespace
}  // namespace vblur::cli
