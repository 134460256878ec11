// The reference count of a COM object.
#pragma once

#include <atomic>
#include <cstdint>

namespace vblur {

// Starts with one reference, the maker's. Both operations return the new count.
class RefCount {
 public:
  // The caller holds a reference, so relaxed order suffices.
  std::uint32_t Add() { return count_.fetch_add(1, std::memory_order_relaxed) + 1; }
  // At 0 the caller deletes the object. It sees what other threads wrote before they dropped their references.
  std::uint32_t Drop() { return count_.fetch_sub(1, std::memory_order_acq_rel) - 1; }

 private:
  std::atomic<std::uint32_t> count_{1};
};

}  // namespace vblur
