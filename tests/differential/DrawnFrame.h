// One random frame: a job and the pictures that it names, in memory.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "host/jobs/Job.h"

namespace vblur::differential {

// Components in rows from the bottom up; four a pixel, or one in a mask. Floats as the bits that they consist of.
struct DrawnPicture {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::int32_t components = 4;
  std::vector<std::int32_t> values;
};

struct DrawnFrame {
  host::Job job;  // depth, kind and duration are always set, frames never
  std::optional<DrawnPicture> input;
  std::optional<DrawnPicture> input2;
  std::optional<DrawnPicture> mask;
  DrawnPicture initial;  // what the output holds before the frame
};

enum class DrawnKinds {
  Filters,  // kind 1, without the stages after the filter: no mix-back, no masks, no blanking, no cropped display
  All,
};

enum class DrawnDepths {
  Integers,  // 8 and 16 bits
  Floats,
  All,  // a third are floats; the others are the frames of Integers
};

// The same frame for the same seed and index, on every machine. Components of floats are finite, masks now and then
// NaN.
DrawnFrame DrawFrame(std::uint64_t seed, std::uint64_t index, DrawnKinds kinds,
                     DrawnDepths depths = DrawnDepths::Integers);

// The frame with other pictures of the same sizes, and other values of the animated properties that it sets.
DrawnFrame RedrawFrame(const DrawnFrame& frame, std::uint64_t seed, std::uint64_t index);

}  // namespace vblur::differential
