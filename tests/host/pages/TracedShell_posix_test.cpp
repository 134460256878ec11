// On Windows the system answers what pages ask of it.
#include "host/pages/TracedShell.h"

#include <algorithm>
#include <iterator>

#include <gtest/gtest.h>

#include "tests/host/pages/PagedEffect.h"

namespace vblur::host {
namespace {

TEST(TracedShell, NotesWhatPagesAskOfTheSystem) {
  std::vector<std::string> lines;
  CallTrace trace([&](const std::string& line) { lines.push_back(line.substr(0, line.find(" ="))); });
  PagedEffect user({}, 0.0, &trace);
  OpenedPage& help = user.session.Pages().Show("HelpPPG");
  lines.clear();
  ControlOf<ButtonControl>(help, "Online Help").Press();
  const std::vector<std::string> asked = {
      "shell.RegOpenKeyExW(Software\\Microsoft\\Windows\\CurrentVersion)",
      "shell.ShellExecuteW(C:Program Files\\The Halvern\\Vessin 4.3 for DS10 (64bit)\\Documentation\\Vessin4.3.pdf)"};
  std::vector<std::string> shell;
  std::ranges::copy_if(lines, std::back_inserter(shell), [](const auto& line) { return line.starts_with("shell."); });
  EXPECT_EQ(shell, asked);
}

}  // namespace
}  // namespace vblur::host
