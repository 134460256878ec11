// docs/PAGES.md against the program: its commands print what is shown there, and its tables name every page and event.
#include <sstream>

#include "properties/PageNames.h"
#include "tests/apps/CodeBlocks.h"
#include "tests/apps/ProgramTest.h"

namespace vblur::cli {
namespace {

class PagesDocument : public ProgramTest {
 protected:
  PagesDocument() {
    const std::string job = Only("json");
    folder_.Write("shot.json", job);
    folder_.Write("shot-dissolve.json", "{\n  \"input2\": {\"file\": \"second.%04d.png\"}," + job.substr(1));
    folder_.Write("look.page", Only("page"));
    folder_.Write("drag.pen", Only("pen"));
  }

  std::string Only(const std::string& language) const {
    const auto blocks = CodeBlocks(document_, language);
    EXPECT_EQ(blocks.size(), 1u) << language;
    return blocks.at(0);
  }
  // What a shell prints of a command, both streams.
  std::string Printed(const std::string& command) const {
    const std::string program = std::filesystem::path(VBLUR_PROGRAM).parent_path().string();
    const ProcessResult result =
        Process(folder_.path(), {"/bin/sh", "-c", "PATH='" + program + "':$PATH; " + command}).Wait();
    return result.out + result.err;
  }

  const std::string document_ = TextOfDocument(VBLUR_PAGES_DOCUMENT);
};

TEST_F(PagesDocument, ItsCommandsPrintWhatItShows) {
  const auto consoles = CodeBlocks(document_, "console");
  EXPECT_GE(consoles.size(), 8u);
  for (const std::string& console : consoles) {
    std::string printed;
    std::istringstream lines(console);
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with("$ ")) printed += line + "\n" + Printed(line.substr(2));
    }
    EXPECT_EQ(printed, console);
  }
}

TEST_F(PagesDocument, NamesEveryPageAndEvent) {
  for (const std::string_view page : pages::kAll)
    EXPECT_NE(document_.find("| `" + std::string(page) + "` |"), std::string::npos) << page;
  for (const char* event :
       {"show PAGE", "set CONTROL NUMBER", "scrub CONTROL STEPS...", "choose LIST ENTRY", "tick BOX", "untick BOX",
        "pick R,G,B", "press BUTTON", "time T", "undo", "redo", "print"}) {
    EXPECT_NE(document_.find("`" + std::string(event) + "`"), std::string::npos) << event;
  }
}

}  // namespace
}  // namespace vblur::cli
