// Points and boxes of the overlay: 32-bit floats, y upwards.
#pragma once

#include <algorithm>
#include <limits>

namespace vblur {

struct HvPoint {
  float x = 0.0f;
  float y = 0.0f;

  friend bool operator==(const HvPoint&, const HvPoint&) = default;
};

inline HvPoint operator+(HvPoint a, HvPoint b) {
  return {a.x + b.x, a.y + b.y};
}
inline HvPoint operator-(HvPoint a, HvPoint b) {
  return {a.x - b.x, a.y - b.y};
}

inline constexpr float kHvLargest = std::numeric_limits<float>::max();

// Default: empty, with the minima above the maxima.
struct HvBox {
  float minX = kHvLargest;
  float maxX = -kHvLargest;
  float minY = kHvLargest;
  float maxY = -kHvLargest;

  void Grow(HvPoint point) {
    minX = std::min(minX, point.x);
    maxX = std::max(maxX, point.x);
    minY = std::min(minY, point.y);
    maxY = std::max(maxY, point.y);
  }
  // An empty box adds nothing.
  void Grow(const HvBox& box) {
    minX = std::min(minX, box.minX);
    maxX = std::max(maxX, box.maxX);
    minY = std::min(minY, box.minY);
    maxY = std::max(maxY, box.maxY);
  }

  friend bool operator==(const HvBox&, const HvBox&) = default;
};

// A box from its lower left corner and its extent.
inline HvBox BoxOf(HvPoint origin, HvPoint size) {
  return {origin.x, origin.x + size.x, origin.y, origin.y + size.y};
}

struct HvColour {
  float red = 1.0f;
  float green = 1.0f;
  float blue = 1.0f;

  friend bool operator==(const HvColour&, const HvColour&) = default;
};

}  // namespace vblur
