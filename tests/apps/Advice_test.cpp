// A refusal advises only options that the command has.
#include <regex>

#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class Advice : public ProgramTest {
 protected:
  Advice() {
    MakePicture("in.png");
    MakePicture("old.png");
    folder_.Write("job.json", R"({"input": {"file": "in.png"}, "output": {"file": "old.png"}})");
  }

  static std::vector<std::string> OptionsIn(const std::string& text) {
    static const std::regex option("--[a-z-]+");
    std::vector<std::string> options;
    for (std::sregex_iterator at(text.begin(), text.end(), option), end; at != end; ++at)
      options.push_back(at->str());
    return options;
  }

  // Runs a command whose output exists, checks that it has each option that its refusal names, and returns the refusal.
  std::string AdviceOf(const std::vector<std::string>& command) const {
    const std::string bytes = host::Bytes(Path("old.png"));
    const ProcessResult result = Run(command);
    EXPECT_EQ(result.exit, 4);
    EXPECT_EQ(host::Bytes(Path("old.png")), bytes);
    const std::string help = Run({command.front(), "--help"}).out;
    const auto known = OptionsIn(help);
    for (const std::string& option : OptionsIn(result.err)) {
      EXPECT_NE(std::find(known.begin(), known.end(), option), known.end()) << command.front() << " has no " << option;
    }
    return result.err;
  }
};

TEST_F(Advice, NamesOptionsThatTheCommandHas) {
  const std::string cause = "vblur: old.png: cannot write: the file exists already";
  const std::string both = cause + "; give --overwrite to replace it or --skip-existing to leave it\n";
  const std::string one = cause + "; give --overwrite to replace it\n";
  EXPECT_EQ(AdviceOf({"render", "in.png", "old.png"}), both);
  EXPECT_EQ(AdviceOf({"job", "job.json"}), both);
  EXPECT_EQ(AdviceOf({"chart", "old.png"}), one);
  EXPECT_EQ(AdviceOf({"sheet", "in.png", "old.png", "--of", "channels"}), one);
  EXPECT_EQ(AdviceOf({"kernel", "old.png"}), one);
  EXPECT_EQ(AdviceOf({"view", "job.json", "old.png"}), one);
}

TEST_F(Advice, FollowedSucceeds) {
  EXPECT_EQ(Run({"chart", "old.png", "--size", "8x8", "--overwrite"}).exit, 0);
  EXPECT_EQ(Run({"render", "in.png", "old.png", "--skip-existing"}).exit, 0);
}

TEST_F(Advice, OtherFailuresGetNone) {
  ExpectRefusal({"chart", "no/old.png"}, 4, "no/old.png: cannot write: the folder no does not exist");
}

}  // namespace
}  // namespace vblur::cli
