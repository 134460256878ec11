// Completions and the manual page in the programs that read them.
#include <regex>
#include <sstream>

#include "tests/apps/DocumentTest.h"

namespace vblur::cli {
namespace {

class DocumentsOfShells : public DocumentTest {
 protected:
  ProcessResult Shell(const std::string& shell, const std::string& script) const {
    return Process(folder_.path(), {shell, "-c", script}).Wait();
  }

  // What bash offers for the last word of a command line.
  std::set<std::string> Offered(const std::vector<std::string>& words) const {
    folder_.Write("vblur.bash", bash_);
    std::string line = "source ./vblur.bash; COMP_WORDS=(vblur";
    for (const std::string& word : words)
      line += " '" + word + "'";
    line += "); COMP_CWORD=" + std::to_string(words.size()) + R"(; _vblur; printf '%s\n' "${COMPREPLY[@]}")";
    const auto result = Shell("/bin/bash", line);
    EXPECT_EQ(result.exit, 0);
    EXPECT_EQ(result.err, "") << line;
    std::istringstream lines(result.out);
    std::set<std::string> offered;
    for (std::string each; std::getline(lines, each);) {
      if (!each.empty()) offered.insert(each);
    }
    return offered;
  }

  using Words = std::set<std::string>;
  const std::string bash_ = Document("bash");
};

TEST_F(DocumentsOfShells, TheManualPageIsWellFormed) {
  folder_.Write("vblur.1", Document("man"));
  if (Shell("/bin/sh", "command -v groff").exit != 0) GTEST_SKIP() << "there is no groff here";
  const auto result = Shell("/bin/sh", "groff -man -Tascii -P-cbou -ww vblur.1");
  EXPECT_EQ(result.exit, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_NE(result.out.find("VBLUR RENDER"), std::string::npos);
  EXPECT_NE(result.out.find("Exit codes"), std::string::npos);
}

TEST_F(DocumentsOfShells, EveryOptionIsInTheCompletions) {
  const std::string zsh = Document("zsh");
  const std::string fish = Document("fish");
  for (const std::string& command : kCommands) {
    const Words offered = Offered({command, "--"});
    for (const std::string& option : OptionsOf(command)) {
      EXPECT_TRUE(offered.contains(option)) << command << ' ' << option;
      EXPECT_TRUE(Has(zsh, option)) << command << ' ' << option;
      EXPECT_TRUE(Has(fish, " -l " + option.substr(2))) << command << ' ' << option;
    }
  }
}

TEST_F(DocumentsOfShells, BashOffersCommandsOptionsAndValues) {
  EXPECT_EQ(Offered({"ch"}), Words{"chart"});
  EXPECT_EQ(Offered({"help", "ke"}), Words{"kernel"});
  EXPECT_EQ(Offered({"render", "--mix-b"}), Words{"--mix-back"});
  EXPECT_EQ(Offered({"render", "in.png", "out.png", "--mix-back", "add"}), (Words{"add", "add-over", "add-under"}));
  EXPECT_EQ(Offered({"in.png", "out.png", "--mix-back", "=", "scr"}), Words{"screen"});
  EXPECT_EQ(Offered({"render", "--mix-back", "="}).size(), 19u);
  EXPECT_EQ(Offered({"render", "--method", ""}), (Words{"blur", "sharpen"}));
  EXPECT_EQ(Offered({"render", "--on-error", "s"}), (Words{"skip", "stop"}));
  EXPECT_EQ(Offered({"job", "--format", "we"}), Words{"webp"});
  EXPECT_EQ(Offered({"sheet", "--of", ""}), (Words{"channels", "mix-back", "edges", "sizes", "ramps"}));
  EXPECT_EQ(Offered({"view", "--page", "Full"}), Words{"FullBlurPPG"});
  EXPECT_EQ(Offered({"properties", "mix"}), Words{"mix-back"});
  EXPECT_EQ(Offered({"render", "--blur", ""}), Words{});
  EXPECT_EQ(Offered({"render", "--masks"}), Words{});
}

TEST_F(DocumentsOfShells, BashOffersFiles) {
  folder_.Write("some picture.png", "");
  folder_.Write("server.so", "");
  EXPECT_EQ(Offered({"render", "some"}), Words{"some picture.png"});
  EXPECT_EQ(Offered({"render", "a.png", "b.png", "--mask", "some"}), Words{"some picture.png"});
  EXPECT_EQ(Offered({"chart", "--server", "ser"}), Words{"server.so"});
  EXPECT_EQ(Offered({"some"}), Words{"some picture.png"});
}

// Each offered value of each option is one that the program reads.
TEST_F(DocumentsOfShells, OfferedValuesAreRead) {
  MakePicture("in.png");
  for (const char* option :
       {"--mix-back", "--channels", "--effect-scaling", "--x-edge-method", "--transition-ramping"}) {
    const Words values = Offered({"render", option, ""});
    EXPECT_GT(values.size(), 2u) << option;
    for (const std::string& value : values)
      EXPECT_EQ(Run({"in.png", "out.png", "--overwrite", option, value}).exit, 0) << option << ' ' << value;
  }
}

TEST_F(DocumentsOfShells, OtherShellsReadTheirScripts) {
  bool isFound = false;
  for (const std::string shell : {"zsh", "fish"}) {
    folder_.Write("script", Document(shell));
    if (Shell("/bin/sh", "command -v " + shell).exit != 0) continue;
    isFound = true;
    const auto result = Shell("/bin/sh", shell + " -n script");
    EXPECT_EQ(result.exit, 0) << result.err;
    EXPECT_EQ(result.err, "") << shell;
  }
  if (!isFound) GTEST_SKIP() << "there is no other shell here";
}

}  // namespace
}  // namespace vblur::cli
