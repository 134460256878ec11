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

// Wine takes long names as they are: this is what makes Windows take them.
TEST(LongPath, LongNamesGetThePrefixOfTheSystem) {
  const std::string folder = "C:\\b\\";
  const std::string shorter = folder + std::string(239 - folder.size(), 'a');
  EXPECT_EQ(ExtendedPath(shorter), std::filesystem::path(shorter));
  EXPECT_EQ(ExtendedPath(shorter + "a"), std::filesystem::path("\\\\?\\" + shorter + "a"));
  // With the prefix, the system takes no slashes and no dots.
  EXPECT_EQ(ExtendedPath("C:/./c/../b/" + shorter.substr(folder.size()) + "a"),
            std::filesystem::path("\\\\?\\" + shorter + "a"));
  const std::string shared = "server\\share\\" + std::string(240, 'a');
  EXPECT_EQ(ExtendedPath("\\\\" + shared), std::filesystem::path("\\\\?\\UNC\\" + shared));
  EXPECT_EQ(ExtendedPath(std::string(240, 'a')).native().rfind(L"\\\\?\\", 0), 0u);
}

TEST(LongPath, ShortNamesStay) {
  EXPECT_EQ(ExtendedPath("a.png"), std::filesystem::path("a.png"));
  EXPECT_EQ(ExtendedPath("C:\\b/a.png"), std::filesystem::path("C:\\b/a.png"));
}

}  // namespace
}  // namespace vblur::host
