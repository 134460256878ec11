// What each of the three boxes of a pass produces, so that the next one finds what it reads.
#pragma once

#include <cstdint>

#include "blur/BoxFilter.h"

namespace vblur {

// The axis that the lines of a pass lie along: the window's ends on it, where the target begins, the
// length of the longest line, and what lies beyond a line.
struct PassAxis {
  std::int64_t first = 0;
  std::int64_t last = 0;
  std::int64_t targetStart = 0;
  std::int64_t lineLength = 0;
  std::int32_t edgeMethod = 0;
  // The x pass may have to filter the whole buffer; the y pass writes the window and no more.
  bool lastBoxKeepsToWindow = false;
};

struct PassRanges {
  BoxReach first;
  BoxReach second;
  BoxReach last;
  // A range that the line buffer does not hold has become the whole buffer. That happens for radii below
  // zero only, and then the next box reads the buffer beyond its ends.
  bool fellBack = false;
};

inline PassRanges passRanges(const BoxConstants& box, std::int32_t boxes, const PassAxis& axis) {
  const std::int64_t start = axis.targetStart - box.margin(boxes);
  const std::int64_t end = start + axis.lineLength + 2 * box.margin(boxes);
  const std::int64_t reach = box.reach();
  PassRanges ranges;
  const auto rangeOrBuffer = [&](std::int64_t first, std::int64_t last) -> BoxReach {
    if (first >= start && last <= end) return {first, last};
    ranges.fellBack = true;
    return {start, end};
  };
  ranges.first = rangeOrBuffer(axis.first - 2 * reach - 2, axis.last + 2 * reach + 2);
  ranges.second = rangeOrBuffer(axis.first - reach - 1, axis.last + reach + 1);
  ranges.last = axis.lastBoxKeepsToWindow ? BoxReach{axis.first, axis.last} : rangeOrBuffer(axis.first, axis.last);
  return ranges;
}

}  // namespace vblur
