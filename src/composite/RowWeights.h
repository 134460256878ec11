// The weights that vector code accepts.
#pragma once

#include <cmath>

namespace vblur {

// Weights of at most 16 keep every float finite and below 2^31: 16-bit components give operands of at most 2^20 and
// products of at most 2^28.
inline constexpr float kMostWeight = 16.0f;

template <class... Floats>
bool rowWeightsFit(Floats... weights) {
  return ((std::fabs(weights) <= kMostWeight) && ...);
}

}  // namespace vblur
