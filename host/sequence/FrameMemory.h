// Memory use of frames in flight.
#pragma once

#include <cstdint>
#include <string>

#include "host/jobs/Job.h"
#include "host/sequence/JobPictures.h"

namespace vblur::host {

struct FrameMemory {
  std::int64_t width = 0;  // of the output
  std::int64_t height = 0;
  std::int64_t pictures = 0;  // in bytes: what is read, with the channels that pass, and the output
  // What the effect takes beside them, without the lines and tables of each thread: some hundred bytes for each pixel
  // of the longer side and of the blur, and some 60 KiB.
  std::int64_t own = 0;
  bool isWhole = true;  // rendered at once, not in bands

  std::int64_t Total() const { return pictures + own; }
};

// How a frame is rendered.
struct FrameUse {
  std::int32_t depth = 8;
  double time = 0.0;        // of its blur
  bool usesVectors = true;  // not the plain code
};

// Of a frame, from the headers of its files; all 0 without pictures. Throws as ReadPictureInfo does.
FrameMemory EstimateFrameMemory(const Job& job, const JobPictures& pictures, std::int32_t frame, const FrameUse& use);

// Throws Failure (some frames failed, FailureKind::NeedsMemory) for a frame that takes more than is allowed, with both
// numbers.
void RequireMemory(const FrameMemory& memory, std::int64_t allowed, const std::string& file);

// What is allowed by default: half of the machine's memory, and 2 GiB at least.
std::int64_t DefaultMemory();

// "512M", "2G", "3.4G", rounded up.
std::string FormatBytes(std::int64_t bytes);

}  // namespace vblur::host
