// What people type into a console, whatever its code page is.
#pragma once

#include <cstdint>
#include <span>

namespace vblur::host {

// Waits for a line. How many bytes of UTF-8 were read, 0 at the end, which is Ctrl-Z at the beginning of a line; -1
// with the system's error. The process has one console: what does not fit into `bytes` is left for the next call.
std::int64_t ReadTypedText(void* console, std::span<char> bytes);

}  // namespace vblur::host
