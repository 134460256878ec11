#include "host/base/PartFiles.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

#include "host/base/Processes.h"
#include "host/base/Utf8.h"
#include "tests/support/host/Pictures.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

// The name of the same file of another process.
std::string Of(const std::string& process, std::string name) {
  const std::string own = "-" + std::to_string(OwnProcess()) + "-";
  return name.replace(name.find(own), own.size(), "-" + process + "-");
}

TEST(PartFiles, ThoseOfEndedProcessesAreRemoved) {
  const ScratchFolder scratch;
  const std::string own = Utf8Of(PartFileFor("a.b.png"));
  const std::string plain = Utf8Of(PartFileFor("a"));
  const auto write = [&](const std::string& name) { scratch.Write(PathOf(name), "x"); };
  std::set<std::string> kept{own, Utf8Of(ScratchFileFor(PathOf(own))), "a.png", Of("99999999999", own)};
  for (const std::string& name : kept)
    write(name);
  for (const std::string& part : {own, plain, Utf8Of(ScratchFileFor(PathOf(own))), Utf8Of(ScratchFileFor(plain))})
    write(Of("999999999", part));
  RemoveAbandonedParts(scratch.path());
  EXPECT_EQ(NamesIn(scratch.path()), kept);
  RemoveAbandonedParts(scratch.path() / "none");
}

// As long as a name may be, and with characters of several bytes where it is cut.
TEST(PartFiles, TheirNamesAreShortAndOfWholeCharacters) {
  std::string umlauts;
  for (int i = 0; i < 60; ++i)
    umlauts += "\xC3\xA4";
  for (const std::string& begin : {std::string("a"), std::string()}) {
    const std::string target = begin + umlauts + "." + begin + umlauts;
    const std::string part = Utf8Of(PartFileFor(PathOf(target)));
    EXPECT_LE(part.size(), 255u);
    EXPECT_EQ(part.find("\xEF\xBF\xBD"), std::string::npos) << part;
    EXPECT_EQ(Utf8Of(Utf16Of(part)), part) << "it is no UTF-8";
  }
  const ScratchFolder scratch;
  const auto part = PartFileFor(scratch.path() / ("a." + std::string(253, 'x')));
  scratch.Write(part.filename(), "x");
  EXPECT_TRUE(std::filesystem::exists(part));
}

}  // namespace
}  // namespace vblur::host
