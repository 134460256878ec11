// A lock for a short time, not recursive. The cross compiler's std::mutex allocates memory at the first lock that it
// never gives back; the system's needs none.
#pragma once

#ifndef _WIN32
#include <mutex>
#endif

namespace vblur {

#ifdef _WIN32
class HvMutex {
 public:
  HvMutex() = default;
  HvMutex(const HvMutex&) = delete;
  HvMutex& operator=(const HvMutex&) = delete;

  // Named for std::lock_guard.
  void lock();
  void unlock();

 private:
  void* word_ = nullptr;  // the system's
};
#else
using HvMutex = std::mutex;
#endif

}  // namespace vblur
