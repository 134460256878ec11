// The stand-alone host's word on whether a render may go on. One context may serve several effects at
// once.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/IDSExecuteContext.h"

namespace vblur::host {

class ExecuteContext : public IDSExecuteContext {
 public:
  std::int32_t MayContinue() override;

  // From any thread or signal handler, any number of times; there is no way back.
  void Stop() noexcept { stopped_.store(true, std::memory_order_relaxed); }
  bool stopped() const noexcept { return stopped_.load(std::memory_order_relaxed); }

  // Lets the next `polls` questions pass and stops at the one after, for interruptions at a known place.
  // Before the render begins.
  void StopAfterPolls(std::int64_t polls);

 private:
  static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler must not wait for a lock");

  std::atomic<bool> stopped_ = false;
  std::atomic<std::int64_t> pollsLeft_ = 0;
  bool countsPolls_ = false;
};

}  // namespace vblur::host
