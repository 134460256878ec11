// The base of the tests of printed documents: what the help tells of options.
#pragma once

#include <regex>
#include <set>
#include <string>
#include <vector>

#include "tests/apps/ProgramTest.h"

namespace vblur::cli {

inline const std::vector<std::string> kCommands{"render", "job",  "properties", "chart", "sheet",
                                                "kernel", "view", "page",       "info"};

class DocumentTest : public ProgramTest {
 protected:
  std::string Document(const std::string& kind) const {
    const auto result = Run({"document", kind});
    EXPECT_EQ(result.exit, 0);
    EXPECT_EQ(result.err, "");
    return result.out;
  }

  // Every option in the help of a command, the program's own ones without one.
  std::set<std::string> OptionsOf(const std::string& command) const {
    static const std::regex option("\n +(?:-[a-zA-Z],)?(--[a-z][a-z0-9-]*)");
    const std::string help = command.empty() ? Run({"--help"}).out : Run({command, "--help"}).out;
    std::set<std::string> options;
    for (std::sregex_iterator at(help.begin(), help.end(), option), end; at != end; ++at)
      options.insert((*at)[1].str());
    EXPECT_GT(options.size(), 1u) << command;
    return options;
  }
};

// Whether the text has the option, and not only a longer one.
inline bool Has(const std::string& text, const std::string& option) {
  return std::regex_search(text, std::regex(option + "(?![a-z0-9-])"));
}

}  // namespace vblur::cli
