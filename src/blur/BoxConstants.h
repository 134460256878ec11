// The constants of one box of the filter on integers: whole taps, a fraction at either end, and two Q14 factors (16384
// is 1.0).
//
// A box of radius r + f has 2r + 1 taps of weight 1 and one tap of weight f on each side. Its scale is truncated, so
// that its gain, scale * (2r + 1 + 2f) / 16384, is below 1: 0.9937 at radius 100, 0 from radius 8192 on.
#pragma once

#include <cstdint>

#include "image/Arithmetic.h"

namespace vblur {

// What a box reads, whatever its arithmetic.
struct BoxShape {
  std::int32_t r = 0;  // taps of weight 1 on each side of the centre
  std::int32_t d = 0;  // 1 when there is a fraction

  friend bool operator==(const BoxShape&, const BoxShape&) = default;

  // Positions that the box reads on each side of a result, without the tap that enters next.
  constexpr std::int64_t reach() const { return static_cast<std::int64_t>(r) + d; }
  // Positions of a line buffer beyond either end of the line.
  constexpr std::int64_t margin(std::int32_t boxes) const { return (reach() + 1) * boxes; }
};

struct BoxConstants : BoxShape {
  std::int32_t scale = 0;  // Q14
  std::int32_t frac = 0;   // Q14

  friend bool operator==(const BoxConstants&, const BoxConstants&) = default;
};

// Valid for radii below zero too.
constexpr BoxConstants boxConstants(float radius) {
  BoxConstants box;
  box.r = truncToInt(radius);
  const float f = radius - static_cast<float>(box.r);
  box.d = f != 0.0f ? 1 : 0;
  const float taps = static_cast<float>(wrapAdd(wrapMul(2, box.r), 1)) + f * 2.0f;
  // A width of 0 divides by zero: infinity becomes the least integer.
  box.scale = taps == 0.0f ? kInt32Min : truncToInt((1.0f / taps) * 16384.0f);
  box.frac = truncToInt(f * 16384.0f);
  return box;
}

}  // namespace vblur
