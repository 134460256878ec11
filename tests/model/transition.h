// Progress of a transition, its mix, and the blur's factor.
#pragma once

#include "properties.h"

namespace model {

/// The ramp at x: 1 in, 2 out, 3 in and out, any other linear.
float Ramp(float x, int ramping);

struct TransitionState {
  float progress = 0.0f;  ///< time over duration, not clamped
  float mix = 0.0f;       ///< share of the second clip
  float scale = 1.0f;     ///< factor on the blur amount
};

/// Without a duration, or with equal fade points, the quotients are infinite or NaN.
TransitionState TransitionAt(const Properties& properties, double time, double duration);

/// The blur's factor for the second clip in a cross fade.
float CrossedScale(const Properties& properties, const TransitionState& state);

}  // namespace model
