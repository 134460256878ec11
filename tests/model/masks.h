// The paint mask.
#pragma once

#include <array>

#include "depth.h"
#include "picture.h"
#include "window.h"

namespace model {

/// One component under a mask value: source at 0, effect at the top; other values mix. Integers extrapolate below 0.
std::int32_t MaskedComponent(Depth depth, std::int32_t source, std::int32_t effect, std::int32_t mask);

/// Mixes the source into the output by the mask. Where the mask has no pixel it counts as 0; where the source has none
/// it counts as zero, regardless of its outside colour.
void ApplyMask(Depth depth, const Picture& source, const Picture& mask, Picture& output, const Window& window);

}  // namespace model
