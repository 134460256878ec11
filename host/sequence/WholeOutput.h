// Whether an output that exists is a whole frame.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "host/files/OutputFormat.h"
#include "host/files/PictureFile.h"

namespace vblur::host {

// Why a file is not the frame that a render would write, in a line that begins with the file; empty when it is. Reads
// every row. `sizes` are those that the frame may have, in pixels; none where they are not known. Throws
// FileInterrupted.
std::string FlawOfOutput(const std::filesystem::path& file, const OutputFormat& format,
                         const std::vector<std::array<std::int32_t, 2>>& sizes, const StopTest& stop);

}  // namespace vblur::host
