// Ramps and scaling of a transition.
#pragma once

#include <cstdint>

namespace vblur {

// The values of `Effect Scaling`.
enum HvEffectScaling : std::int32_t { kDontScale = 0, kFadeInAndOut = 1, kCrossFade = 2 };

// Applies a ramp to a share of 0..1. Every ramp maps 0 to 0 and 1 to 1.
float RampValue(float x, std::int32_t ramping);

}  // namespace vblur
