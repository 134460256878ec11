// One box of the filter on floats. Its running sum is exact, so that a result depends on the components under the box
// alone: not on where a line, a band or a tile began, nor on the order of the additions.
//
// A component enters the sum as a 64-bit fixed-point number, its value rounded to the nearest multiple of 2^-step, ties
// to even. The step is as fine as the box allows: 2^46 steps of components up to kMostCarried, divided by the taps.
//
//   result = float(double(inner) * whole + double(ends) * atEnds)
//
// where inner is the sum of the 2r + 1 whole taps, ends that of the two taps of weight f, whole is
// 2^-step / (2r + 1 + 2f), and atEnds is f times that. The four roundings in double are far below half a unit in the
// last place of a float: the mean of equal components is the component.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

#include "blur/BoxConstants.h"

namespace vblur {

// The largest component that the filter carries, the largest of half floats. Beyond it and at infinity components count
// as the largest, and what is not a number as 0.
inline constexpr float kMostCarried = 65504.0f;

// The largest component whose sums doubles hold exactly, those of a box of any size: at most 2^53 steps.
inline constexpr float kMostInDoubles = 32.0f;

constexpr float carried(float v) {
  if (v != v) return 0.0f;
  return clampTo(v, -kMostCarried, kMostCarried);
}

struct ExactBox : BoxShape {
  std::int32_t step = 0;
  double whole = 0.0;
  double atEnds = 0.0;

  friend bool operator==(const ExactBox&, const ExactBox&) = default;
};

// The bits that a sum of `taps` components needs beyond those of one, so that |sum| <= 2^bits * |component|.
constexpr std::int32_t bitsOfTaps(std::int64_t taps) {
  return static_cast<std::int32_t>(std::bit_width(static_cast<std::uint64_t>(taps - 1)));
}

// A radius below 0, or that is not a number, counts as 0.
constexpr float exactRadius(float radius) {
  return radius > 0.0f ? radius : 0.0f;
}

// For radii from 0 up. A sum of two components fits 64 bits at the finest step, 2^-46.
inline ExactBox exactBox(float radius) {
  constexpr std::int32_t kFinestStep = 46;
  ExactBox box;
  box.r = truncToInt(radius);
  const float f = radius - static_cast<float>(box.r);
  box.d = f != 0.0f ? 1 : 0;
  const std::int64_t taps = 2 * static_cast<std::int64_t>(box.r) + 1;
  box.step = kFinestStep - bitsOfTaps(taps);
  const double width = static_cast<double>(taps) + static_cast<double>(f) * 2.0;
  box.whole = std::ldexp(1.0 / width, -box.step);
  box.atEnds = box.whole * static_cast<double>(f);
  return box;
}

// A component of at most kMostCarried in steps. Scaling by a power of two is exact; only the last conversion rounds.
inline std::int64_t inSteps(float v, double stepsPerUnit) {
  return static_cast<std::int64_t>(std::nearbyint(static_cast<double>(v) * stepsPerUnit));
}

// Filters `n` positions of rows of `lanes` components, up to kMostExactLanes. `in` is the row at reach() before the
// first position; the last row that is read is r + 1 after the last one.
inline constexpr int kMostExactLanes = 64;
void exactBoxRows(const float* in, std::int64_t n, int lanes, const ExactBox& box, float* out);

}  // namespace vblur
