// The server's module: its handle, and the count that keeps it loaded.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/Module.h"

namespace vblur {

HMODULE ServerModule();

// One for every factory, every lock of the server and every effect.
std::atomic<std::int32_t>& ServerLocks();

}  // namespace vblur
