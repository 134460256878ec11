#include "host/base/Failure.h"

#include <gtest/gtest.h>

#include "tests/support/host/FailureOf.h"

namespace vblur::host {
namespace {

TEST(Failure, IsOneLineWhateverAFileIsNamed) {
  EXPECT_EQ(CaughtFailure([] { RefuseToRead("a\nb\t\x1b[31m\x7f.png", "no\r\nsuch file"); })->what(),
            std::string("a b  [31m .png: cannot read: no  such file"));
  EXPECT_EQ(OnOneLine("Größe"), "Größe");
}

}  // namespace
}  // namespace vblur::host
