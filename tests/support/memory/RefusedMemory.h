// Has operator new of the whole process fail where a test wants it to.
#pragma once

#include <cstdint>

namespace vblur {

// For as long as it lives, the calling thread's allocation after the first `granted` is refused; those after it
// are granted again.
class RefusedMemory {
 public:
  explicit RefusedMemory(std::int64_t granted);
  ~RefusedMemory();
  RefusedMemory(const RefusedMemory&) = delete;
  RefusedMemory& operator=(const RefusedMemory&) = delete;

  // The allocation came to pass, and was refused.
  static bool HasRefused();
};

}  // namespace vblur
