#include "host/base/RealPaths.h"

#include <gtest/gtest.h>

#include "tests/support/host/ScratchFolder.h"

namespace vblur::host {
namespace {

TEST(RealPaths, OneFileHasOnePathInAnyCase) {
  const ScratchFolder scratch;
  scratch.Write("Real/A.png", "x");
  RealPaths paths;
  const auto real = paths.Of(scratch.path() / "Real" / "A.png");
  for (const char* name : {"real/a.png", "REAL\\A.PNG", "real/../Real/./a.PNG"})
    EXPECT_EQ(paths.Of(scratch.path() / name), real) << name;
  EXPECT_EQ(paths.Of(scratch.path() / "Real/New.png"), paths.Of(scratch.path() / "real/new.PNG"));
  EXPECT_NE(paths.Of(scratch.path() / "Real/B.png"), real);
}

TEST(RealPaths, FilesAndFoldersMayBeMissing) {
  const ScratchFolder scratch;
  RealPaths paths;
  EXPECT_EQ(paths.Of(scratch.path() / "no/such/../a.png"), paths.Of(scratch.path() / "No/A.png"));
}

}  // namespace
}  // namespace vblur::host
