// The range that each of the three boxes of a pass produces: what the next one reads.
#pragma once

#include <cstdint>

#include "blur/BoxFilter.h"

namespace vblur {

// The axis of a pass: the window on it, the target's origin, the length of the longest line and its edge method.
struct PassAxis {
  std::int64_t first = 0;
  std::int64_t last = 0;
  std::int64_t targetStart = 0;
  std::int64_t lineLength = 0;
  std::int32_t edgeMethod = 0;
  // True in the y pass. The last box of the x pass may run over the whole buffer.
  bool lastBoxKeepsToWindow = false;
};

struct PassRanges {
  BoxReach first;
  BoxReach second;
  BoxReach last;
};

inline PassRanges passRanges(const BoxShape& box, std::int32_t boxes, const PassAxis& axis) {
  const std::int64_t start = axis.targetStart - box.margin(boxes);
  const std::int64_t end = start + axis.lineLength + 2 * box.margin(boxes);
  const std::int64_t reach = box.reach();
  PassRanges ranges;
  // A range that the line buffer does not hold becomes the whole buffer. Only radii below zero do this; the next box
  // then reads beyond the ends of the buffer.
  const auto rangeOrBuffer = [&](std::int64_t first, std::int64_t last) -> BoxReach {
    if (first >= start && last <= end) return {first, last};
    return {start, end};
  };
  ranges.first = rangeOrBuffer(axis.first - 2 * reach - 2, axis.last + 2 * reach + 2);
  ranges.second = rangeOrBuffer(axis.first - reach - 1, axis.last + reach + 1);
  ranges.last = axis.lastBoxKeepsToWindow ? BoxReach{axis.first, axis.last} : rangeOrBuffer(axis.first, axis.last);
  return ranges;
}

}  // namespace vblur
