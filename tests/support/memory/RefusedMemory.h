// Makes a chosen operator new fail.
#pragma once

#include <cstdint>

namespace vblur {

// In its scope one allocation of the calling thread fails: the one after the first `granted`.
class RefusedMemory {
 public:
  explicit RefusedMemory(std::int64_t granted);
  ~RefusedMemory();
  RefusedMemory(const RefusedMemory&) = delete;
  RefusedMemory& operator=(const RefusedMemory&) = delete;

  // Whether an allocation has failed.
  static bool HasRefused();
};

}  // namespace vblur
