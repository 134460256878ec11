#include "host/base/LongPath.h"

#include <string>
#include <system_error>
#include <vector>

#include <gtest/gtest.h>

#include "host/base/SystemFiles.h"
#include "host/base/TextFile.h"
#include "host/base/Utf8.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

TEST(LongPath, FilesLieDeep) {
  const ScratchFolder scratch;
  std::filesystem::path folder = scratch.path();
  for (int i = 0; i < 4; ++i) {
    folder /= std::string(100, 'a');
    std::filesystem::create_directory(ExtendedPath(folder));
  }
  const std::string name = Utf8Of(folder / "a.json");
  WriteTextBeside("text", PathOf(name), "job file")->Commit();
  EXPECT_EQ(ReadTextFile(PathOf(name), "job file"), "text");
  EXPECT_EQ(Utf8Of(PathOf(name)), name);
  EXPECT_EQ(EntriesOf(folder), std::vector<std::filesystem::path>{"a.json"});
  for (; folder != scratch.path(); folder = folder.parent_path()) {
    std::error_code ignored;
    std::filesystem::remove(ExtendedPath(folder / "a.json"), ignored);
    std::filesystem::remove(ExtendedPath(folder), ignored);
  }
}

// Whoever writes it so, for a folder that another name is in.
TEST(LongPath, APrefixIsNoFolder) {
  EXPECT_EQ(PathOf("\\\\?\\C:\\b\\a.png"), std::filesystem::path("C:\\b\\a.png"));
  EXPECT_EQ(std::filesystem::path("D:\\c") / PathOf("\\\\?\\C:\\a.png"), std::filesystem::path("C:\\a.png"));
}

TEST(LongPath, ShortNamesStay) {
  EXPECT_EQ(ExtendedPath("a.png"), std::filesystem::path("a.png"));
  EXPECT_EQ(ExtendedPath("C:\\b/a.png"), std::filesystem::path("C:\\b/a.png"));
}

}  // namespace
}  // namespace vblur::host
