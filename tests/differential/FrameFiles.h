// A drawn frame as files: its job and the pictures that the job names.
#pragma once

#include <filesystem>

#include "tests/differential/DrawnFrame.h"

namespace vblur::differential {

// Writes job.json and its pictures, in the formats of their names, into the folder, which is made. A mask becomes a
// grey picture: at 16 bits the nearest one in steps of 1/16384.
void WriteFrameFiles(const DrawnFrame& frame, const std::filesystem::path& folder);

// Makes the frame one that PNG files hold: colours of 0 to 1, amounts that a grey picture gives back.
void LimitToPng(DrawnFrame& frame);
// What a PNG file gives back of a picture of a depth.
void LimitToPng(DrawnPicture& picture, std::int32_t depth);

}  // namespace vblur::differential
