// What the machine has, and what the system leaves to this process.
#pragma once

#include <cstdint>

namespace vblur::host {

// In bytes; 0 where the system does not tell.
std::int64_t MachineMemory();

// The files that this process may open yet.
std::int64_t FreeFiles();

}  // namespace vblur::host
