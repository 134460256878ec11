#include "tests/hashes/NumberFile.h"

#include <fstream>

#include <gtest/gtest.h>

#include "host/base/Failure.h"
#include "tests/support/host/FailureOf.h"

namespace vblur::hashes {
namespace {

class NumberFile : public testing::Test {
 protected:
  ~NumberFile() override { std::filesystem::remove(file_); }

  // One for each test, on every platform.
  std::filesystem::path file_ =
      std::filesystem::path(testing::TempDir()) /
      (std::string("vblur-") + testing::UnitTest::GetInstance()->current_test_info()->name() + ".txt");
};

TEST_F(NumberFile, GivesBackWhatWasWritten) {
  const differential::DrawnPicture picture{2, 2, 1, {-32768, 32767, 0, -1}};
  WriteNumbers(picture, file_);
  const auto read = ReadNumbers(file_);
  EXPECT_EQ(read.width, 2);
  EXPECT_EQ(read.height, 2);
  EXPECT_EQ(read.components, 1);
  EXPECT_EQ(read.values, picture.values);
}

TEST_F(NumberFile, RefusesAFileThatIsMissingOrShort) {
  const auto missing = host::CaughtFailure([&] { ReadNumbers(file_); });
  EXPECT_EQ(missing->Code(), host::ExitCode::CannotRead);
  std::ofstream(file_) << "2 2 1\n1 2\n3\n";
  const auto found = host::CaughtFailure([&] { ReadNumbers(file_); });
  EXPECT_EQ(found->what(), file_.string() + ": expected 4 values, found 3");
}

}  // namespace
}  // namespace vblur::hashes
