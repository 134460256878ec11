#include "host/light/openexr/ExrThreads.h"

#include <algorithm>
#include <exception>
#include <mutex>
#include <thread>

#include <ImfThreading.h>

namespace vblur::host {

int UseExrThreads(std::int32_t wanted) {
  static std::mutex lock;
  const int processors = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
  const int threads = std::min(processors, static_cast<int>(wanted));
  if (threads <= 1) return 0;
  const std::lock_guard hold(lock);
  try {
    if (Imf::globalThreadCount() < threads) Imf::setGlobalThreadCount(threads);
  } catch (const std::exception&) {
    // The system has none.
    return 0;
  }
  return threads;
}

}  // namespace vblur::host
