// Compares the effect with the model on drawn frames and shows where they differ.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "tests/differential/DrawnFrame.h"

namespace vblur::differential {

// Empty when both give the same bits, else one line: how many components differ, and the first. `depth` is that of the
// frame.
std::string Difference(const DrawnPicture& effect, const DrawnPicture& model, std::int32_t depth);
std::string CompareFrame(const DrawnFrame& frame);

// Writes the frame as a job file with its pictures, and the model's result as expected.png or .exr.
void WriteFrame(const DrawnFrame& frame, const std::filesystem::path& folder);

}  // namespace vblur::differential
