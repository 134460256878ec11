// The frames whose hashes are compared: golden jobs, random frames, and both as files hold them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tests/differential/DrawnFrame.h"

namespace vblur::hashes {

struct NamedFrame {
  std::string name;
  differential::DrawnFrame frame;
};

// SET/INDEX, with four digits.
std::string Numbered(const std::string& set, std::uint64_t index);

// A picture of a golden job by its file name, `components` of `depth` bits: 4, or 1 of a mask.
using GoldenPicture =
    std::function<differential::DrawnPicture(const std::string& file, std::int32_t depth, std::int32_t components)>;

// golden/NAME: the golden jobs of a folder by name, with their pictures in memory, at the depth that they render with.
// Throws host::Failure for a job that cannot be read, that names no depth, or that is a sequence.
std::vector<NamedFrame> GoldenFrames(const std::filesystem::path& folder, const GoldenPicture& picture);

// random/INDEX: the same frame for the same index, on every machine.
NamedFrame RandomFrame(std::uint64_t index);

// floats/INDEX: the same with pixels of 32-bit floats.
NamedFrame FloatFrame(std::uint64_t index);

// How many random frames are written as files.
inline constexpr std::uint64_t kFramesInFiles = 36;

// Whether a job file may describe the frame, and the program renders it.
bool IsRendered(const differential::DrawnFrame& frame);

// files/...: these frames, and `count` further random ones that a job file may describe, with pictures as PNG files
// hold them.
std::vector<NamedFrame> FramesInFiles(std::vector<NamedFrame> golden, std::uint64_t count);

// The output of a frame as a job has it: fields in turn, and the input around a region; in linear light of colours of
// the sRGB transfer function. Throws host::Failure for a frame that the host refuses.
differential::DrawnPicture RenderJobFrame(const differential::DrawnFrame& frame);

}  // namespace vblur::hashes
