// The weights that vector code takes.
#pragma once

#include <cmath>

namespace vblur {

// With weights of at most 16 nothing that is reckoned in floats is infinite, not a number or beyond 2^31:
// 16-bit components make operands of at most 2^20 and products of at most 2^28.
inline constexpr float kMostWeight = 16.0f;

template <class... Floats>
bool rowWeightsFit(Floats... weights) {
  return ((std::fabs(weights) <= kMostWeight) && ...);
}

}  // namespace vblur
