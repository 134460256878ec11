#include "host/base/RealPaths.h"

#include <gtest/gtest.h>

#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

namespace fs = std::filesystem;

TEST(RealPaths, OneFileHasOnePathThroughLinksAndSteps) {
  const ScratchFolder scratch;
  const fs::path real = scratch.Write("real/a.png", "x");
  fs::create_directory_symlink(scratch.path() / "real", scratch.path() / "link");
  fs::create_symlink("a.png", scratch.path() / "real/b.png");
  RealPaths paths;
  for (const char* name :
       {"real/a.png", "link/a.png", "real/b.png", "link/b.png", "link/./a.png", "real/../link/b.png"})
    EXPECT_EQ(paths.Of(scratch.path() / name), real) << name;
  EXPECT_EQ(paths.Of(scratch.path() / "link/new.png"), scratch.path() / "real/new.png");
}

TEST(RealPaths, FilesAndFoldersMayBeMissing) {
  const ScratchFolder scratch;
  RealPaths paths;
  EXPECT_EQ(paths.Of(scratch.path() / "no/such/../a.png"), scratch.path() / "no/a.png");
  EXPECT_EQ(paths.Of("a.png"), fs::canonical(".") / "a.png");
  EXPECT_EQ(paths.Of("none/../a.png"), fs::canonical(".") / "a.png");
}

}  // namespace
}  // namespace vblur::host
