#include "host/base/PartFiles.h"

#include <regex>
#include <string>

#include <gtest/gtest.h>

#include "host/base/Processes.h"
#include "host/base/Utf8.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

TEST(PartFiles, ThoseOfEndedProcessesAreRemoved) {
  const ScratchFolder scratch;
  const std::string own = Utf8Of(PartFileFor("a.png"));
  const std::string ended =
      std::regex_replace(own, std::regex("-" + std::to_string(OwnProcess()) + "-"), "-999999999-");
  ASSERT_NE(own, ended);
  for (const std::string& name : {own, ended, std::string("a.png")})
    scratch.Write(PathOf(name), "x");
  RemoveAbandonedParts(scratch.path());
  EXPECT_TRUE(std::filesystem::exists(scratch.path() / PathOf(own)));
  EXPECT_TRUE(std::filesystem::exists(scratch.path() / "a.png"));
  EXPECT_FALSE(std::filesystem::exists(scratch.path() / PathOf(ended)));
}

}  // namespace
}  // namespace vblur::host
