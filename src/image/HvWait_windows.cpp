#include "image/HvWait.h"

#include <windows.h>

// By the system's own calls: where libstdc++ 12 has no futex, std::atomic's wait looks at the number before it takes
// the lock that it sleeps with, and misses a wake in between for good.
namespace vblur {

void HvWaitWhile(const std::atomic<std::uint32_t>& number, std::uint32_t seen) {
  static_assert(sizeof number == sizeof seen && std::atomic<std::uint32_t>::is_always_lock_free);
  while (number.load(std::memory_order_acquire) == seen) {
    // It takes a pointer to what may change, and does not change it.
    auto* const address = const_cast<std::atomic<std::uint32_t>*>(&number);
    WaitOnAddress(address, &seen, sizeof seen, INFINITE);
  }
}

void HvWakeAll(std::atomic<std::uint32_t>& number) {
  WakeByAddressAll(&number);
}

void HvWakeOne(std::atomic<std::uint32_t>& number) {
  WakeByAddressSingle(&number);
}

}  // namespace vblur
