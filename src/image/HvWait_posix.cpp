#include "image/HvWait.h"

namespace vblur {

void HvWaitWhile(const std::atomic<std::uint32_t>& number, std::uint32_t seen) {
  number.wait(seen, std::memory_order_acquire);
}

void HvWakeAll(std::atomic<std::uint32_t>& number) {
  number.notify_all();
}

void HvWakeOne(std::atomic<std::uint32_t>& number) {
  number.notify_one();
}

}  // namespace vblur
