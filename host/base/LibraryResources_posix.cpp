#include "host/base/LibraryResources.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include <pthread.h>
#include <sys/mman.h>

#include "host/base/Failure.h"

namespace vblur::host {

namespace {

// Threads that do nothing, all at once. Their stacks are small: what counts is whether the system has threads.
class IdleThreads {
 public:
  IdleThreads() {
    ::pthread_attr_init(&attributes_);
    constexpr std::size_t kStackBytes = 256 * 1024;
    ::pthread_attr_setstacksize(&attributes_, kStackBytes);
  }
  ~IdleThreads() {
    {
      const std::lock_guard hold(lock_);
      over_ = true;
    }
    changed_.notify_all();
    for (const pthread_t thread : threads_)
      ::pthread_join(thread, nullptr);
    ::pthread_attr_destroy(&attributes_);
  }
  IdleThreads(const IdleThreads&) = delete;
  IdleThreads& operator=(const IdleThreads&) = delete;

  // The system's number of the error, or 0.
  int Start() {
    pthread_t thread;
    const int error = ::pthread_create(&thread, &attributes_, &IdleThreads::Wait, this);
    if (error == 0) threads_.push_back(thread);
    return error;
  }

 private:
  static void* Wait(void* self) {
    auto& threads = *static_cast<IdleThreads*>(self);
    std::unique_lock hold(threads.lock_);
    threads.changed_.wait(hold, [&] { return threads.over_; });
    return nullptr;
  }

  pthread_attr_t attributes_;
  std::vector<pthread_t> threads_;
  std::mutex lock_;
  std::condition_variable changed_;
  bool over_ = false;
};

void RequireThreads(const std::string& what) {
  // Pools of one thread per processor, two at most, and single threads.
  const unsigned wanted = 2 * std::max(1u, std::thread::hardware_concurrency()) + 8;
  IdleThreads threads;
  for (unsigned i = 0; i < wanted; ++i) {
    const int error = threads.Start();
    if (error == 0) continue;
    throw Failure(ExitCode::SomeFramesFailed, "the system starts no more threads (" +
                                                  std::generic_category().message(error) + "), " + what + " needs " +
                                                  std::to_string(wanted));
  }
}

void RequireAddressSpace(const std::string& what) {
  // The libraries themselves, and the stacks and heaps of their threads.
  constexpr std::size_t kMebi = 480;
  constexpr std::size_t kBytes = kMebi << 20;
  void* const space = ::mmap(nullptr, kBytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (space == MAP_FAILED) {
    throw Failure(ExitCode::SomeFramesFailed,
                  "not enough address space, " + what + " needs " + std::to_string(kMebi) + " MiB of it");
  }
  ::munmap(space, kBytes);
}

}  // namespace

void RequireResourcesToLoad(const std::string& what) {
  RequireAddressSpace(what);
  RequireThreads(what);
}

}  // namespace vblur::host
