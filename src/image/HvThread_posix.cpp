#include "image/HvThread.h"

#include <memory>
#include <thread>
#include <utility>

namespace vblur {

HvThread::HvThread(std::function<void()> work) : thread_(new std::thread(std::move(work))) {}

HvThread::HvThread(HvThread&& other) noexcept : thread_(std::exchange(other.thread_, nullptr)) {}

HvThread::~HvThread() {
  const std::unique_ptr<std::thread> thread(static_cast<std::thread*>(thread_));
  if (thread != nullptr) thread->join();
}

}  // namespace vblur
