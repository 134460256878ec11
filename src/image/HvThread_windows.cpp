#include "image/HvThread.h"

#include <memory>
#include <system_error>
#include <utility>

#include <process.h>

#include <windows.h>

namespace vblur {
namespace {

unsigned __stdcall Begin(void* work) {
  const std::unique_ptr<std::function<void()>> own(static_cast<std::function<void()>*>(work));
  (*own)();
  return 0;
}

}  // namespace

HvThread::HvThread(std::function<void()> work) : thread_(nullptr) {
  auto own = std::make_unique<std::function<void()>>(std::move(work));
  thread_ = reinterpret_cast<void*>(::_beginthreadex(nullptr, 0, &Begin, own.get(), 0, nullptr));
  if (thread_ == nullptr) throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
  static_cast<void>(own.release());
}

HvThread::HvThread(HvThread&& other) noexcept : thread_(std::exchange(other.thread_, nullptr)) {}

HvThread::~HvThread() {
  if (thread_ == nullptr) return;
  ::WaitForSingleObject(thread_, INFINITE);
  ::CloseHandle(thread_);
}

}  // namespace vblur
