// Tells renders to stop. One context may serve several effects.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/IDSExecuteContext.h"

namespace vblur::host {

class ExecuteContext : public IDSExecuteContext {
 public:
  std::int32_t MayContinue() override;

  // From any thread or signal handler, any number of times. Final.
  void Stop() noexcept { stopped_.store(true, std::memory_order_relaxed); }
  bool Stopped() const noexcept { return stopped_.load(std::memory_order_relaxed); }

  // For tests: stops at the poll after the next `polls`. Call before the render begins.
  void StopAfterPolls(std::int64_t polls);

 private:
  static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler must not wait for a lock");

  std::atomic<bool> stopped_ = false;
  std::atomic<std::int64_t> pollsLeft_ = 0;
  bool countsPolls_ = false;
};

}  // namespace vblur::host
