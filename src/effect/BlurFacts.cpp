// Facts about the size of the blur, for programs that explain it.
#include <algorithm>
#include <cmath>

#include "blur/BoxConstants.h"
#include "effect/Blur.h"

namespace vblur {

// The variances of the three boxes add up. The gain of one box, from its fixed-point weights, to the power of six:
// three boxes on each of two axes.
BlurSizeFacts Blur::DescribeBlurSize(double blur) const {
  const float radius = static_cast<float>(std::max(blur, 0.0)) / 3.0f;
  const BoxConstants box = boxConstants(radius);
  const double r = box.r;
  const double f = static_cast<double>(radius) - r;
  const double squares = r * (r + 1.0) * (2.0 * r + 1.0) / 3.0 + 2.0 * f * (r + 1.0) * (r + 1.0);
  const double weights = (2.0 * r + 1.0 + 2.0 * box.frac / 16384.0) * box.scale / 16384.0;
  return {.boxRadius = static_cast<double>(radius),
          .sigma = std::sqrt(3.0 * squares / (2.0 * r + 1.0 + 2.0 * f)),
          .flatGain = std::pow(weights, 6.0)};
}

}  // namespace vblur
