// Peak memory of a frame, without the host's pictures. Every allocation of pixels, lines or tables is noted
// here.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace vblur {

// Current and peak bytes. Thread-safe.
class HvMemoryAccount {
 public:
  void take(std::size_t bytes);
  void give(std::size_t bytes);
  std::int64_t peak() const { return peak_.load(std::memory_order_relaxed); }

 private:
  std::atomic<std::int64_t> held_{0};
  std::atomic<std::int64_t> peak_{0};
};

// Within its scope, allocations of the calling thread and of the threads of its runs are charged to the account. Null:
// nothing is counted.
class HvMemoryScope {
 public:
  explicit HvMemoryScope(HvMemoryAccount* account);
  ~HvMemoryScope();
  HvMemoryScope(const HvMemoryScope&) = delete;
  HvMemoryScope& operator=(const HvMemoryScope&) = delete;

 private:
  HvMemoryAccount* const outer_;
};

// The account that the calling thread charges; null outside every scope.
HvMemoryAccount* HvChargedAccount();

// Note the allocation and the release of a buffer, both within one scope.
void HvNoteTaken(std::size_t bytes);
void HvNoteGiven(std::size_t bytes);

// Notes a buffer that has the note's lifetime.
class HvMemoryNote {
 public:
  explicit HvMemoryNote(std::size_t bytes) : bytes_(bytes) { HvNoteTaken(bytes_); }
  ~HvMemoryNote() { HvNoteGiven(bytes_); }
  HvMemoryNote(const HvMemoryNote&) = delete;
  HvMemoryNote& operator=(const HvMemoryNote&) = delete;

 private:
  const std::size_t bytes_;
};

}  // namespace vblur
