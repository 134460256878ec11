// What the header of a file promises against the length of the file. Some readers take memory for what a header
// promises before they look whether it is there, and some leave pixels as they were where the file ends.
#pragma once

#include <filesystem>

namespace vblur::host {

// Throws Failure (cannot read) for an EXR file whose attributes are not as long as they say, and for a DPX file of 10
// or 12 bits whose pixels end early. Other formats' readers notice.
// `path` is its name in messages, `file` where its bytes are.
void RequireLength(const std::filesystem::path& path, const std::filesystem::path& file);

}  // namespace vblur::host
