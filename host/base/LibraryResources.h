// What large libraries take from the system while they are loaded.
#pragma once

#include <string>

namespace vblur::host {

// Throws Failure (some frames failed) unless the system has threads and address space for a library with all that it
// loads: some of these end the process or crash when they get none. `what` names the library in messages.
void RequireResourcesToLoad(const std::string& what);

}  // namespace vblur::host
