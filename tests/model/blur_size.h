// Computes the radii of the filter from the user's blur amount.
#pragma once

#include <optional>

#include "frame_job.h"

namespace model {

struct BlurSize {
  float x;
  float y;
};

/// Radii of one box along x and y. `fieldScale` is 0.5 for a half-height field, else 1.
BlurSize BlurSizeOf(const FrameJob& job, float transitionScale, float fieldScale);

}  // namespace model
