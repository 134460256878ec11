#include "host/hosted/ExecuteContext.h"

namespace vblur::host {

std::int32_t ExecuteContext::MayContinue() {
  if (countsPolls_ && pollsLeft_.fetch_sub(1, std::memory_order_relaxed) <= 0) Stop();
  return Stopped() ? 0 : 1;
}

void ExecuteContext::StopAfterPolls(std::int64_t polls) {
  pollsLeft_.store(polls, std::memory_order_relaxed);
  countsPolls_ = true;
}

}  // namespace vblur::host
