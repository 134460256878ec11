// An animation curve: keys and interpolation.
#pragma once

#include <cstdint>
#include <vector>

namespace vblur {

struct DSCurveKey {
  double time = 0.0;
  double value = 0.0;

  friend bool operator==(const DSCurveKey&, const DSCurveKey&) = default;
};

enum class DSInterpolation : std::int32_t { Linear = 0, Hold = 1, Smooth = 2 };

struct DSCurve {
  // At least one key, times strictly rising.
  std::vector<DSCurveKey> keys;
  DSInterpolation interpolation = DSInterpolation::Linear;

  // The value at a time; constant before the first key and after the last. Smooth has slope 0 at every key (a cubic
  // ease between neighbours).
  double At(double time) const;

  friend bool operator==(const DSCurve&, const DSCurve&) = default;
};

}  // namespace vblur
