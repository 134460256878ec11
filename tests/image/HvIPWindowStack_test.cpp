#include "image/HvIPWindowStack.h"

#include <gtest/gtest.h>

#include "image/HvImgProc.h"
#include "tests/image/WindowEnds.h"

namespace vblur::test {
namespace {

class HvIPWindowStackTest : public ::testing::Test {
 protected:
  HvImgProc proc_;
  HvIPWindowStack stack_{&proc_};
};

TEST_F(HvIPWindowStackTest, RestoresWindowsInReverseOrder) {
  proc_.setWindow(1, 2, 3, 4);
  const std::uint32_t flags = proc_.flags;
  EXPECT_EQ(stack_.push(), 1);
  EXPECT_EQ(stack_.pushAndSet(10, 20, 30, 40), 1);
  EXPECT_EQ(windowOf(proc_), (Ends{10, 20, 31, 41}));
  EXPECT_EQ(stack_.push(), 1);
  proc_.x1 = 99;
  EXPECT_EQ(stack_.pop(), 1);
  EXPECT_EQ(windowOf(proc_), (Ends{10, 20, 31, 41}));
  EXPECT_EQ(stack_.pop(), 1);
  EXPECT_EQ(windowOf(proc_), (Ends{1, 2, 4, 5}));
  EXPECT_EQ(stack_.pop(), 1);
  EXPECT_EQ(stack_.pop(), 0);
  EXPECT_EQ(windowOf(proc_), (Ends{1, 2, 4, 5}));
  EXPECT_EQ(proc_.flags, flags);
}

TEST_F(HvIPWindowStackTest, DoesNotMarkAWindowAsSet) {
  EXPECT_EQ(stack_.pushAndSet(1, 2, 3, 4), 1);
  EXPECT_EQ(proc_.flags, 0u);
}

TEST_F(HvIPWindowStackTest, RefusesAnEleventhWindow) {
  for (int i = 0; i < 10; ++i) {
    proc_.x1 = i;
    EXPECT_EQ(stack_.push(), 1);
  }
  proc_.x1 = 100;
  const Ends before = windowOf(proc_);
  EXPECT_EQ(stack_.push(), 0);
  EXPECT_EQ(stack_.pushAndSet(7, 7, 7, 7), 0);
  EXPECT_EQ(windowOf(proc_), before);
  for (int i = 9; i >= 0; --i) {
    EXPECT_EQ(stack_.pop(), 1);
    EXPECT_EQ(proc_.x1, i);
  }
  EXPECT_EQ(stack_.pop(), 0);
}

}  // namespace
}  // namespace vblur::test
