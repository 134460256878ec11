// The files that pictures are written to before they take their names, and what becomes of those whose
// writer was killed.
#pragma once

#include <filesystem>

namespace vblur::host {

// A name in the target's folder that no other process, on this machine or on another that shares the
// folder, and no other call picks: hidden, with the target's extension, at most about 200 characters.
std::filesystem::path PartFileFor(const std::filesystem::path& target);

// Removes the part files in a folder that processes of this machine left and that are no longer running.
// Those of other machines stay: they may be at work. What cannot be read or removed is left as it is.
void RemoveAbandonedParts(const std::filesystem::path& folder);

}  // namespace vblur::host
