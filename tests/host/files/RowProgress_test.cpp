#include "host/files/RowProgress.h"

#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "host/files/PictureFile.h"

namespace vblur::host {
namespace {

TEST(RowProgress, RowsThatAreThereAreNotWaitedFor) {
  RowProgress progress;
  progress.WaitFor(0);
  progress.Reach(5);
  progress.WaitFor(5);
  progress.Abandon();
  progress.WaitFor(5);
  EXPECT_THROW(progress.WaitFor(6), FileInterrupted);
}

TEST(RowProgress, WakesAllThatWait) {
  constexpr std::int32_t kRows = 1000;
  RowProgress progress;
  std::vector<int> rows(kRows);
  std::atomic<int> wrong = 0;
  std::vector<std::thread> readers;
  for (int reader = 0; reader < 3; ++reader) {
    readers.emplace_back([&] {
      for (std::int32_t row = 0; row < kRows; ++row) {
        progress.WaitFor(row + 1);
        if (rows[static_cast<std::size_t>(row)] != row + 1) ++wrong;
      }
    });
  }
  for (std::int32_t row = 0; row < kRows; ++row) {
    rows[static_cast<std::size_t>(row)] = row + 1;
    progress.Reach(row + 1);
  }
  for (std::thread& reader : readers)
    reader.join();
  EXPECT_EQ(wrong, 0);
}

TEST(RowProgress, ThoseThatWaitAreToldThatNoMoreRowsCome) {
  RowProgress progress;
  std::atomic<int> told = 0;
  std::vector<std::thread> waiting;
  for (int i = 0; i < 3; ++i) {
    waiting.emplace_back([&] {
      try {
        progress.WaitFor(1);
      } catch (const FileInterrupted&) {
        ++told;
      }
    });
  }
  progress.Abandon();
  for (std::thread& each : waiting)
    each.join();
  EXPECT_EQ(told, 3);
}

}  // namespace
}  // namespace vblur::host
