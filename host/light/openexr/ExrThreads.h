// The threads of the OpenEXR library, which all of its users in the process share.
#pragma once

#include <cstdint>

namespace vblur::host {

// Starts threads of the library until it has so many, at most one for each processor, and returns how many a file may
// ask for: 0 where the calling thread does the work. Never ends one: others may have work for it. Thread-safe.
int UseExrThreads(std::int32_t wanted);

}  // namespace vblur::host
