// Pictures as files of decimal numbers, which every platform reads without a picture library, negative values included.
#pragma once

#include <filesystem>
#include <string>

#include "tests/differential/DrawnFrame.h"

namespace vblur::hashes {

// The file of a golden picture in a folder of frames: its name, the depth, and the components, 4 or 1 of a mask.
std::filesystem::path NumbersOf(const std::filesystem::path& folder, const std::string& file, std::int32_t depth,
                                std::int32_t components);

// "WIDTH HEIGHT COMPONENTS", then the values, a line each row, from the bottom up. Throws host::Failure (cannot write).
void WriteNumbers(const differential::DrawnPicture& picture, const std::filesystem::path& file);
// Throws host::Failure (cannot read) for a file that is missing or holds fewer values than it says.
differential::DrawnPicture ReadNumbers(const std::filesystem::path& file);

}  // namespace vblur::hashes
