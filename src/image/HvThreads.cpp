#include "image/HvThreads.h"

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <memory>
#include <mutex>
#include <new>
#include <system_error>
#include <vector>

#include "image/HvMemory.h"
#include "image/HvMutex.h"
#include "image/HvProcessors.h"
#include "image/HvThread.h"
#include "image/HvThreadWord.h"
#include "image/HvWait.h"

namespace vblur {
namespace {

std::int32_t ThreadIndex() {
  return static_cast<std::int32_t>(HvGetThreadWord(HvThreadWord::Index));
}
void SetThreadIndex(std::int32_t index) {
  HvSetThreadWord(HvThreadWord::Index, index);
}
bool IsInsideRun() {
  return HvGetThreadWord(HvThreadWord::InsideRun) != 0;
}
void SetInsideRun(bool inside) {
  HvSetThreadWord(HvThreadWord::InsideRun, inside ? 1 : 0);
}

template <class... Words>
void callWith(HvThreadFunction function, Words... words) {
  reinterpret_cast<void (*)(Words...)>(function)(words...);
}

void enter(const HvCallBlock& block) {
  const auto& a = block.arguments;
  switch (block.count) {
    case 0: return callWith(block.function, &block);
    case 1: return callWith(block.function, a[0]);
    case 2: return callWith(block.function, a[0], a[1]);
    case 3: return callWith(block.function, a[0], a[1], a[2]);
    case 4: return callWith(block.function, a[0], a[1], a[2], a[3]);
    case 5: return callWith(block.function, a[0], a[1], a[2], a[3], a[4]);
    case 6: return callWith(block.function, a[0], a[1], a[2], a[3], a[4], a[5]);
    default: return;
  }
}

// Threads that sleep between runs. Each run is a new generation; a worker that has finished its part decrements
// busy_.
class Pool {
 public:
#ifndef _WIN32
  // On Windows a library ends while the system's loader waits, and a thread cannot end before the loader goes on: there
  // the threads keep their library until stop, and a process ends without them.
  ~Pool() {
    stopWorkers();
  }
#endif

  std::int32_t count() {
    const std::int32_t known = count_.load(std::memory_order_acquire);
    return known > 0 ? known : reported();
  }

  void setCount(std::int32_t count) {
    const std::lock_guard lock(runMutex_);
    stopWorkers();
    count_.store(std::max(count, 0), std::memory_order_release);
  }

  void stop() {
    const std::lock_guard lock(runMutex_);
    stopWorkers();
  }

  void run(const HvCallBlock& block) {
    if (IsInsideRun() || count() <= 1) return runAlone(block, IsInsideRun() ? count() : 1);
    const std::lock_guard lock(runMutex_);
    const std::int32_t wanted = count();
    group_ = HvCurrentGroup();
    startWorkers(wanted - 1);
    const auto working = static_cast<std::uint32_t>(workers_.size());
    block_ = &block;
    account_ = HvChargedAccount();
    busy_.store(working, std::memory_order_relaxed);
    generation_.fetch_add(1, std::memory_order_release);
    HvWakeAll(generation_);
    SetInsideRun(true);
    enter(block);
    // The caller runs the indices that have no thread.
    for (auto i = static_cast<std::int32_t>(working) + 1; i < wanted; ++i)
      runAs(i, block);
    SetInsideRun(false);
    for (std::uint32_t left = busy_.load(std::memory_order_acquire); left != 0;
         left = busy_.load(std::memory_order_acquire)) {
      HvWaitWhile(busy_, left);
    }
  }

 private:
  static std::int32_t reported() {
    static const std::int32_t processors = HvProcessorCount();
    return processors;
  }

  static void runAs(std::int32_t index, const HvCallBlock& block) {
    const std::int32_t own = ThreadIndex();
    SetThreadIndex(index);
    enter(block);
    SetThreadIndex(own);
  }

  void callOnWorker() {
    const HvMemoryScope scope(account_);
    enter(*block_);
  }

  static void runAlone(const HvCallBlock& block, std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i)
      runAs(i, block);
  }

  void startWorkers(std::int32_t count) {
    if (static_cast<std::int32_t>(workers_.size()) >= count) return;
    if (!hold_.take()) return;
    try {
      while (static_cast<std::int32_t>(workers_.size()) < count) {
        const auto index = static_cast<std::int32_t>(workers_.size()) + 1;
        workers_.emplace_back([this, index, group = group_, seen = generation_.load(std::memory_order_relaxed)] {
          SetThreadIndex(index);
          HvPlaceThread(index, group);
          work(index, group, seen);
        });
      }
    } catch (const std::system_error&) {
      // The system has no more threads: run with the existing ones.
    }
  }

  void stopWorkers() {
    stopping_.store(true, std::memory_order_relaxed);
    generation_.fetch_add(1, std::memory_order_release);
    HvWakeAll(generation_);
    std::vector<HvThread>().swap(workers_);
    hold_.release();
    stopping_.store(false, std::memory_order_relaxed);
  }

  void work(std::int32_t index, std::int32_t group, std::uint32_t seen) {
    SetInsideRun(true);
    for (;;) {
      HvWaitWhile(generation_, seen);
      const std::uint32_t now = generation_.load(std::memory_order_acquire);
      if (now == seen) continue;
      seen = now;
      if (stopping_.load(std::memory_order_relaxed)) return;
      // The caller of this run may be in another group than that of the last.
      if (group != group_) HvPlaceThread(index, group = group_);
      callOnWorker();
      if (busy_.fetch_sub(1, std::memory_order_release) == 1) HvWakeOne(busy_);
    }
  }

  HvMutex runMutex_;
  std::atomic<std::int32_t> count_{0};
  std::atomic<std::uint32_t> generation_{0};
  std::atomic<std::uint32_t> busy_{0};
  std::atomic<bool> stopping_{false};
  const HvCallBlock* block_ = nullptr;
  HvMemoryAccount* account_ = nullptr;
  std::int32_t group_ = 0;  // the caller's
  std::vector<HvThread> workers_;
  HvLibraryHold hold_;
};

Pool& pool() {
#ifdef _WIN32
  alignas(Pool) static std::byte storage[sizeof(Pool)];
  static Pool& instance = *::new (static_cast<void*>(storage)) Pool;
#else
  static Pool instance;
#endif
  return instance;
}

}  // namespace

void HvThreadRun(HvThreadFunction function, std::int32_t argumentCount, ...) {
  HvCallBlock block;
  block.count = std::min(argumentCount, kMaxThreadArguments);
  block.function = function;
  std::va_list words;
  va_start(words, argumentCount);
  for (std::int32_t i = 0; i < block.count; ++i)
    block.arguments[i] = va_arg(words, HvWord);
  va_end(words);
  pool().run(block);
}

std::int32_t HvThreadCount() {
  return pool().count();
}

std::int32_t HvThreadIndex() {
  return ThreadIndex();
}

void HvSetThreadCount(std::int32_t count) {
  pool().setCount(count);
}

void HvStopThreads() {
  pool().stop();
}

}  // namespace vblur
