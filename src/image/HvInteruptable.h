// Whether a frame should stop: one record per frame, polled by every processor once per row.
#pragma once

#include <atomic>
#include <cstdint>

namespace vblur {

// Written by any thread of a run without a lock; a race costs at most one more row.
using HvStateWord = std::atomic<std::int32_t>;

struct HvInterruptRecord {
  // Non-zero means stop, with the reason written to the second argument.
  using Callback = std::int32_t (*)(void* context, HvStateWord* state);

  void* context = nullptr;
  Callback callback = nullptr;
  HvStateWord interrupted{0};  // sticky: once non-zero the frame is over
  HvStateWord state{0};        // the reason
  // An allocation of a possible size failed: the frame is lost, not finished.
  HvStateWord memoryRefused{0};

  void arm(void* newContext, Callback newCallback) {
    context = newContext;
    callback = newCallback;
    interrupted.store(0, std::memory_order_relaxed);
    state.store(0, std::memory_order_relaxed);
    memoryRefused.store(0, std::memory_order_relaxed);
  }

  // Stops the frame: out of memory. A buffer of negative length counts as that too.
  void stopForMemory() {
    interrupted.store(kOutOfMemoryCode, std::memory_order_relaxed);
    state.store(kOutOfMemoryReason, std::memory_order_relaxed);
  }

  static constexpr std::int32_t kOutOfMemoryCode = 1;
  static constexpr std::int32_t kOutOfMemoryReason = 1000;
};

// Non-zero: stop. Asks the callback unless the frame is stopped already; a null record never stops.
inline std::int32_t poll(HvInterruptRecord* record) {
  if (record == nullptr) return 0;
  const std::int32_t known = record->interrupted.load(std::memory_order_relaxed);
  if (known != 0 || record->callback == nullptr) return known;
  const std::int32_t code = record->callback(record->context, &record->state);
  // Only a stop is stored: a late "go on" must not undo another thread's stop.
  if (code != 0) record->interrupted.store(code, std::memory_order_relaxed);
  return code;
}

inline void stopForMemory(HvInterruptRecord* record) {
  if (record != nullptr) record->stopForMemory();
}

// The same after a failed allocation of a possible size.
inline void stopForRefusedMemory(HvInterruptRecord* record) {
  if (record == nullptr) return;
  record->memoryRefused.store(1, std::memory_order_relaxed);
  record->stopForMemory();
}

// The root of all processors.
class HvInteruptable {
 public:
  virtual ~HvInteruptable() = default;

  HvInterruptRecord* interrupt = nullptr;
};

}  // namespace vblur
