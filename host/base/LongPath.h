// Names of files for the system.
#pragma once

#include <filesystem>

namespace vblur::host {

// The same file by a name that the system takes at any length. On Windows one that has more than some 240 characters
// from its drive on begins with \\?\, which Utf8Of leaves out.
std::filesystem::path ExtendedPath(std::filesystem::path path);

}  // namespace vblur::host
