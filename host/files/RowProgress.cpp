#include "host/files/RowProgress.h"

#include "host/files/PictureFile.h"

namespace vblur::host {

void RowProgress::Reach(std::int32_t rows) {
  {
    const std::lock_guard hold(lock_);
    rows_.store(rows, std::memory_order_release);
  }
  changed_.notify_all();
}

void RowProgress::Abandon() {
  {
    const std::lock_guard hold(lock_);
    isAbandoned_ = true;
  }
  changed_.notify_all();
}

void RowProgress::WaitFor(std::int32_t rows) const {
  // Mostly they are there: the lock is for those that have to wait.
  const auto areThere = [&] { return rows_.load(std::memory_order_acquire) >= rows; };
  if (areThere()) return;
  std::unique_lock hold(lock_);
  changed_.wait(hold, [&] { return areThere() || isAbandoned_; });
  if (!areThere()) throw FileInterrupted{};
}

}  // namespace vblur::host
