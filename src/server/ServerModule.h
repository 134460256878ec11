// The server's module handle and lock count.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/Module.h"

namespace vblur {

HMODULE ServerModule();

// Counts factories, LockServer calls, effects and tools.
std::atomic<std::int32_t>& ServerLocks();

}  // namespace vblur
