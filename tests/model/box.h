// One box of the filter: its constants in Q14, and the box over one line.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace model {

/// Weights of a box of any radius: 2r + 1 taps of weight 1 and, with a fraction, one more on each
/// side with the weight of the fraction.
struct Box {
  std::int32_t r;      ///< whole part of the radius
  std::int32_t d;      ///< 1 if the radius has a fraction
  std::int32_t scale;  ///< 1 / sum of the weights, Q14, truncated
  std::int32_t frac;   ///< weight of the two end taps, Q14, truncated
};

Box MakeBox(float radius);

/// Pixels of a line buffer beyond each end of the picture, for `boxes` boxes in a row.
std::int64_t MarginOf(const Box& box, int boxes);

/// The value at a coordinate along the line.
using LineSource = std::function<std::int32_t(std::int64_t)>;

/// The box at begin, begin + 1, ... end - 1, rounded to the nearest integer, halves upward. A radius of -1 or less has
/// no taps: its running sum starts at 0, so the result depends on where the line begins.
std::vector<std::int32_t> BoxLine(const LineSource& source, std::int64_t begin, std::int64_t end, const Box& box);

}  // namespace model
