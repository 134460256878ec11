// A thread of the pool, started and joined. On Windows the system starts it: std::thread of the cross compiler would
// leave a thread-local slot of the process behind at each unload of the library.
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
