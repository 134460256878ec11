// Names of temporary files for output, and removal of those that killed processes left.
#pragma once

#include <filesystem>

namespace vblur::host {

// A unique name in the target's folder, across processes and machines that share it: hidden, with the target's
// extension, at most about 200 characters.
std::filesystem::path PartFileFor(const std::filesystem::path& target);

// Removes part files of this machine's processes that no longer run. Those of other machines stay: their writers may
// be running. What cannot be read or removed is skipped.
void RemoveAbandonedParts(const std::filesystem::path& folder);

}  // namespace vblur::host
