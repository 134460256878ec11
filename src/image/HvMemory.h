// How much memory a frame holds beside the pictures that it is given: whoever allocates pixels, lines or tables for
// a pass says so here, and the frame is told the most that there was at one time.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace vblur {

// Bytes held now and at their height. From any thread.
class HvMemoryAccount {
 public:
  void take(std::size_t bytes);
  void give(std::size_t bytes);
  std::int64_t peak() const { return peak_.load(std::memory_order_relaxed); }

 private:
  std::atomic<std::int64_t> held_{0};
  std::atomic<std::int64_t> peak_{0};
};

// Charges an account with what the calling thread allocates, for the length of a scope; the threads of a run charge
// that of the run's caller. Null: nobody counts.
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

// Said of every buffer of a frame, when it is allocated and when it is let go of, within one scope.
void HvNoteTaken(std::size_t bytes);
void HvNoteGiven(std::size_t bytes);

// The same for a buffer that lives as long as this.
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
