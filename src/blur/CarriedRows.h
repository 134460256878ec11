// Floats of any kind made such as the filter carries, by vector code.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vblur {

// n components in place, each as `carried` of it (ExactBox.h). Those whose bits are not set in the mask stay as they
// are: it has kCarriedMask of them and repeats. Null: all are set. Returns whether one that was made lies beyond
// kMostInDoubles.
inline constexpr std::int64_t kCarriedMask = 4;
bool carryRow(float* components, std::int64_t n, const float* mask);

}  // namespace vblur
