#include "image/HvMemory.h"

#include <gtest/gtest.h>

#include "image/HvTexture.h"
#include "image/HvThreads.h"
#include "tests/support/ThreadCount.h"

namespace vblur::test {
namespace {

using Texture = HvTexture<R8, Rf>;

TEST(HvMemory, KeepsTheHeight) {
  HvMemoryAccount account;
  HvNoteTaken(1000);
  EXPECT_EQ(account.peak(), 0) << "nobody counts";
  {
    const HvMemoryScope scope(&account);
    EXPECT_EQ(HvChargedAccount(), &account);
    HvNoteTaken(100);
    { const HvMemoryNote note(50); }
    HvNoteTaken(20);
    HvNoteGiven(120);
    HvNoteTaken(90);
    EXPECT_EQ(account.peak(), 150);
    HvMemoryAccount inner;
    {
      const HvMemoryScope innerScope(&inner);
      HvNoteTaken(7);
    }
    EXPECT_EQ(inner.peak(), 7);
    EXPECT_EQ(HvChargedAccount(), &account);
  }
  EXPECT_EQ(account.peak(), 150);
  EXPECT_EQ(HvChargedAccount(), nullptr);
}

TEST(HvMemory, CountsThePicturesThatTexturesOwn) {
  HvMemoryAccount account;
  const HvMemoryScope scope(&account);
  for (int round = 0; round < 2; ++round) {
    Texture picture(100, 10);
    Texture view;
    view.referTo(picture);
    Texture scratch;
    scratch.horizontal.setSize(50);
    scratch.vertical.setSize(40);
    scratch.allocateScratch(true);
    picture.allocate();
  }
  const std::int64_t height = account.peak();
  // A scratch block may be up to twice as large as requested.
  EXPECT_GE(height, 100 * 10 * 4 + 50 * 40 * 4);
  EXPECT_LE(height, 100 * 10 * 4 + 2 * 50 * 40 * 4);
}

TEST(HvMemory, ThreadsOfARunChargeItsCaller) {
  const ThreadCount threads(4);
  HvMemoryAccount account;
  const auto take =
      reinterpret_cast<HvThreadFunction>(+[](HvWord bytes) { HvNoteTaken(static_cast<std::size_t>(bytes)); });
  {
    const HvMemoryScope scope(&account);
    HvThreadRun(take, 1, HvWord{25});
  }
  EXPECT_EQ(account.peak(), 100);
  HvThreadRun(take, 1, HvWord{25});
  EXPECT_EQ(account.peak(), 100) << "the scope has ended";
}

}  // namespace
}  // namespace vblur::test
