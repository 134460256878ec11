// A generated picture that shows what a blur does: colour bars and hard edges, smooth and stepped ramps,
// lines of several widths, a zone plate, a star, single points, and a soft disc that keeps its colours where
// it is transparent.
#pragma once

#include <cstdint>

#include "host/hosted/HostImage.h"

namespace vblur::host {

// Draws the chart in any size from 1 x 1, with 8 or 16 bits a component. From frame to frame the star
// turns, the rings run outwards and the disc drifts; frame 100 looks like frame 0. The same numbers on every
// machine up to the rounding of its sine.
void DrawTestChart(HostImage& image, std::int32_t depth, std::int32_t width, std::int32_t height, std::int32_t frame);

}  // namespace vblur::host
