// How far a picture is made, while others use the rows that there are.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace vblur::host {

// Thread-safe. Rows are made from the top on.
class RowProgress {
 public:
  // So many rows are there. Never fewer than before.
  void Reach(std::int32_t rows);
  // No more rows will come.
  void Abandon();
  // Returns once so many rows are there. Throws FileInterrupted when they will not come.
  void WaitFor(std::int32_t rows) const;

 private:
  mutable std::mutex lock_;
  mutable std::condition_variable changed_;
  std::atomic<std::int32_t> rows_ = 0;
  bool isAbandoned_ = false;
};

}  // namespace vblur::host
