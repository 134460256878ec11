// Scales pictures with a triangle filter, which has no negative weights: what it makes has no brighter or darker spots
// than the picture.
#pragma once

#include "host/hosted/HostImage.h"

namespace vblur::host {

// A four-component picture to the size of another of the same depth, each component independently. Where a picture
// shrinks, the filter grows with the step; where it grows, the filter reaches to the neighbouring pixels. Beyond the
// edges the last pixels go on. Sums are doubles, rounded once, halves away from zero.
void ScaleByTriangles(const HostImage& from, HostImage& to);

}  // namespace vblur::host
