#include "image/HvMutex.h"

#include <windows.h>

namespace vblur {

static_assert(sizeof(HvMutex) == sizeof(::SRWLOCK));

void HvMutex::lock() {
  ::AcquireSRWLockExclusive(reinterpret_cast<::SRWLOCK*>(&word_));
}

void HvMutex::unlock() {
  ::ReleaseSRWLockExclusive(reinterpret_cast<::SRWLOCK*>(&word_));
}

}  // namespace vblur
