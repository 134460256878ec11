// The ramps of a transition.
#pragma once

#include <cstdint>

namespace vblur {

// How the blur follows a transition: the values of `Effect Scaling`.
enum HvEffectScaling : std::int32_t { kDontScale = 0, kFadeInAndOut = 1, kCrossFade = 2 };

// A share of a transition under a ramp. Each ramp takes 0 to 0 and 1 to 1.
float RampValue(float x, std::int32_t ramping);

}  // namespace vblur
