// The formats that this system's picture library writes.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "host/files/OutputFormat.h"

namespace vblur::host {

inline bool IsHeld(std::string_view extension) {
  return std::ranges::any_of(OutputFormats(), [&](const OutputFormat& format) {
    return (" " + std::string(format.extensions) + " ").find(" " + std::string(extension) + " ") != std::string::npos;
  });
}

// Those of a list of extensions.
inline std::vector<const char*> HeldFormats(std::vector<const char*> extensions) {
  std::erase_if(extensions, [](const char* extension) { return !IsHeld(extension); });
  return extensions;
}

}  // namespace vblur::host
