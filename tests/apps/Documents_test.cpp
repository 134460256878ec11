// The manual page and the completions of shells hold what the help does.
#include <regex>

#include "tests/apps/DocumentTest.h"

namespace vblur::cli {
namespace {

class Documents : public DocumentTest {};

TEST_F(Documents, EveryOptionIsInTheManualPage) {
  const std::string page = std::regex_replace(Document("man"), std::regex("\\\\-"), "-");
  const auto section = [&](const std::string& title) {
    const std::size_t begin = page.find(".SH \"" + title + "\"");
    EXPECT_NE(begin, std::string::npos) << title;
    return page.substr(begin, page.find("\n.SH ", begin) - begin);
  };
  const std::string every = section("OPTIONS OF EVERY COMMAND");
  for (const std::string& option : OptionsOf(""))
    EXPECT_TRUE(Has(every, option)) << option;
  for (const std::string& command : kCommands) {
    std::string name = command;
    std::ranges::transform(name, name.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    const std::string own = section("VBLUR " + name);
    for (const std::string& option : OptionsOf(command))
      EXPECT_TRUE(Has(own, option) || Has(every, option)) << command << ' ' << option;
  }
}

// A text that several commands share names no option that one of them lacks.
TEST_F(Documents, HelpNamesOnlyOptionsThatThereAre) {
  static const std::regex named("--[a-z][a-z0-9-]*");
  const auto global = OptionsOf("");
  for (const std::string& command : kCommands) {
    const std::string help = Run({command, "--help"}).out;
    const auto own = OptionsOf(command);
    for (std::sregex_iterator at(help.begin(), help.end(), named), end; at != end; ++at)
      EXPECT_TRUE(own.contains(at->str()) || global.contains(at->str())) << command << ' ' << at->str();
  }
}

}  // namespace
}  // namespace vblur::cli
