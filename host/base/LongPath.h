// Names of files at any length.
#pragma once

#include <filesystem>

namespace vblur::host {

// A name that the system's functions, and those of the C library, take at any length. On Windows a long one gets the
// beginning that lifts the system's limit of about 260 characters; elsewhere, and for others, the name itself.
std::filesystem::path ExtendedPath(const std::filesystem::path& path);

}  // namespace vblur::host
