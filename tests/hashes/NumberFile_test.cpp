#include "tests/hashes/NumberFile.h"

#include <gtest/gtest.h>

#include "host/base/Failure.h"
#include "tests/support/host/FailureOf.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::hashes {
namespace {

TEST(NumberFile, GivesBackWhatWasWritten) {
  const host::ScratchFolder folder;
  const differential::DrawnPicture picture{2, 2, 1, {-32768, 32767, 0, -1}};
  WriteNumbers(picture, folder.path() / "mask.txt");
  const auto read = ReadNumbers(folder.path() / "mask.txt");
  EXPECT_EQ(read.width, 2);
  EXPECT_EQ(read.height, 2);
  EXPECT_EQ(read.components, 1);
  EXPECT_EQ(read.values, picture.values);
}

TEST(NumberFile, RefusesAFileThatIsMissingOrShort) {
  const host::ScratchFolder folder;
  const auto missing = host::CaughtFailure([&] { ReadNumbers(folder.path() / "none.txt"); });
  EXPECT_EQ(missing->Code(), host::ExitCode::CannotRead);
  const auto file = folder.Write("short.txt", "2 2 1\n1 2\n3\n");
  const auto found = host::CaughtFailure([&] { ReadNumbers(file); });
  EXPECT_EQ(found->what(), file.string() + ": expected 4 values, found 3");
}

}  // namespace
}  // namespace vblur::hashes
