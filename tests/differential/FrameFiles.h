// A drawn frame as files: its job and the pictures that the job names.
#pragma once

#include <filesystem>

#include "tests/differential/DrawnFrame.h"

namespace vblur::differential {

// Writes the frame's pictures, in the formats of their names, into the folder, which is made. A mask becomes a grey
// picture: at 16 bits the nearest one in steps of 1/16384.
void WriteFramePictures(const DrawnFrame& frame, const std::filesystem::path& folder);
// Writes them and job.json.
void WriteFrameFiles(const DrawnFrame& frame, const std::filesystem::path& folder);

}  // namespace vblur::differential
