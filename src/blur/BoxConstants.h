// What a radius means to one box of the filter: whole taps, a fraction at either end, and two Q14
// factors, where 16384 is 1.0.
//
// A box of radius r + f has 2r + 1 taps of weight 1 and one tap of weight f on each side. Its scale is
// truncated, so its gain, scale * (2r + 1 + 2f) / 16384, is a little under 1, and less than a little
// for large radii: 0.9937 at radius 100, 0 from 8192 on. That is how the filter is meant to be.
#pragma once

#include <cstdint>

#include "image/Arithmetic.h"

namespace vblur {

struct BoxConstants {
  std::int32_t r = 0;      // taps of weight 1 on each side of the centre
  std::int32_t d = 0;      // 1 when there is a fraction
  std::int32_t scale = 0;  // Q14
  std::int32_t frac = 0;   // Q14

  friend bool operator==(const BoxConstants&, const BoxConstants&) = default;

  // How far one box reaches, and with it one to spare.
  constexpr std::int64_t reach() const { return static_cast<std::int64_t>(r) + d; }
  // What a line buffer has beyond the line at either end, for a number of boxes.
  constexpr std::int64_t margin(std::int32_t boxes) const { return (reach() + 1) * boxes; }
};

// A radius below zero gives what the formulas give.
constexpr BoxConstants boxConstants(float radius) {
  BoxConstants box;
  box.r = truncToInt(radius);
  const float f = radius - static_cast<float>(box.r);
  box.d = f != 0.0f ? 1 : 0;
  const float taps = static_cast<float>(wrapAdd(wrapMul(2, box.r), 1)) + f * 2.0f;
  // A box of no width at all divides by zero, which no 32-bit integer holds.
  box.scale = taps == 0.0f ? kInt32Min : truncToInt((1.0f / taps) * 16384.0f);
  box.frac = truncToInt(f * 16384.0f);
  return box;
}

}  // namespace vblur
