// A property value that changes with time: keys and how to go from one to the next.
#pragma once

#include <string_view>
#include <vector>

namespace vblur::host {

struct CurveKey {
  double time = 0.0;
  double value = 0.0;

  friend bool operator==(const CurveKey&, const CurveKey&) = default;
};

enum class Interpolation { Linear, Hold, Smooth };

struct Curve {
  // At least one key, times strictly rising.
  std::vector<CurveKey> keys;
  Interpolation interpolation = Interpolation::Linear;

  // The value at a time: that of the first key before it, that of the last key after it. Smooth
  // leaves and reaches every key with slope 0 (a cubic ease between neighbours).
  double At(double time) const;

  friend bool operator==(const Curve&, const Curve&) = default;
};

}  // namespace vblur::host
