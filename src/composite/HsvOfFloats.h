// Hue, saturation and value of float pixels, without the conversion: each of three pixels gives one of them.
//
// The value is the greatest of the colours. The height is how far it rises above black, or above the least colour where
// that is negative. The saturation is the range of the colours over the height, 0 for a height of 0, and thus always in
// 0..1. The hue is the order of the colours and their distances, as shares of the range. For colours from 0 up these
// are the usual definitions.
#pragma once

#include <algorithm>

#include "image/Pixels.h"

namespace vblur {

struct HsvExtent {
  double value;
  double range;
  double height;
};

constexpr HsvExtent hsvExtentOf(const Rf& p) {
  // Adding 0 makes a zero of either sign +0: which of two zeros a compiler takes as the greatest differs.
  const double most = static_cast<double>(std::max({p.red, p.green, p.blue})) + 0.0;
  const double least = std::min({p.red, p.green, p.blue});
  return {most, most - least, most - std::min(least, 0.0)};
}

// The colours with the hue of the first pixel, the saturation of the second and the value of the third; alpha is 0. If
// the first or the second is grey, so is the result. The hue's colours are moved and stretched: those of equal pixels
// come back to the last bit. In doubles: near to grey a stretch is so large that floats would show their rounding.
// Finite for components of at most 2^61.
constexpr Rf withHueSaturationValue(const Rf& hue, const Rf& saturation, const Rf& value) {
  const HsvExtent h = hsvExtentOf(hue);
  const HsvExtent s = hsvExtentOf(saturation);
  const HsvExtent v = hsvExtentOf(value);
  const auto level = static_cast<float>(v.value);
  if (h.range == 0.0 || s.range == 0.0) return {{level, level, level, 0.0f}};
  const double stretch = s.range * v.height / (s.height * h.range);
  if (stretch == 1.0 && v.value == h.value) return {{hue.red, hue.green, hue.blue, 0.0f}};
  const double bottom = v.value - std::min(s.range * v.height / s.height, v.height);
  const auto colour = [&](float c) {
    const double below = h.value - static_cast<double>(c);
    return static_cast<float>(below == h.range ? bottom : std::max(v.value - below * stretch, bottom));
  };
  return {{colour(hue.red), colour(hue.green), colour(hue.blue), 0.0f}};
}

}  // namespace vblur
