#include "host/base/SystemFiles.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

TEST(SystemFiles, AFolderHasEntriesOfItsOwnAlone) {
  const ScratchFolder scratch;
  scratch.Write("a.png", "x");
  scratch.Write("deep/.b", "x");
  auto names = EntriesOf(scratch.path());
  std::ranges::sort(names);
  EXPECT_EQ(names, (std::vector<std::filesystem::path>{"a.png", "deep"}));
  EXPECT_EQ(EntriesOf(scratch.path() / "deep"), std::vector<std::filesystem::path>{".b"});
  EXPECT_TRUE(EntriesOf(scratch.path() / "a.png").empty());
  EXPECT_TRUE(EntriesOf(scratch.path() / "none").empty());
}

}  // namespace
}  // namespace vblur::host
