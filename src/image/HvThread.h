// A thread of the pool, started and joined. On Windows it is the system's own: the threads of the cross compiler's
// library take a word of every thread that an unloaded library does not give back.
#pragma once

#include <functional>

namespace vblur {

class HvThread {
 public:
  // Throws std::system_error when the system has no more threads.
  explicit HvThread(std::function<void()> work);
  HvThread(HvThread&& other) noexcept;
  HvThread& operator=(HvThread&& other) = delete;
  HvThread(const HvThread&) = delete;
  // Joins.
  ~HvThread();

 private:
  void* thread_;
};

}  // namespace vblur
