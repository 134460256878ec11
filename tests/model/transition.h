// How far a transition has gone, and how strong the blur is at that point.
#pragma once

#include "properties.h"

namespace model {

/// x on the ramp: 1 in, 2 out, 3 in and out, any other linear.
float Ramp(float x, int ramping);

struct TransitionState {
  float progress = 0.0f;  ///< time over duration, not limited
  float mix = 0.0f;       ///< share of the second clip
  float scale = 1.0f;     ///< factor on the blur amount
};

/// Without a duration, or between fade points that coincide, the quotients are infinite or NaN.
TransitionState TransitionAt(const Properties& properties, double time, double duration);

/// The factor for the second clip when the effect is faded across.
float CrossedScale(const Properties& properties, const TransitionState& state);

}  // namespace model
