// Threads that sleep until a number in memory changes, and those that wake them.
#pragma once

#include <atomic>
#include <cstdint>

namespace vblur {

// Sleeps while the number is `seen`. Returns once it was another and a thread has woken this one, and now and then
// before: callers look again. What the other thread wrote before the number is seen after.
void HvWaitWhile(const std::atomic<std::uint32_t>& number, std::uint32_t seen);
// Wakes the threads that sleep over the number, which has changed.
void HvWakeAll(std::atomic<std::uint32_t>& number);
// Wakes one of them.
void HvWakeOne(std::atomic<std::uint32_t>& number);

}  // namespace vblur
