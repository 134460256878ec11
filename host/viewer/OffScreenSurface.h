// A surface in memory, from the library that paints with OpenGL. The library is loaded when the first surface is
// wanted, since it brings a driver and fonts along that nothing else needs.
#pragma once

#include <cstdint>
#include <memory>

#include "host/viewer/ViewerSurface.h"

namespace vblur::host {

// Of at least 1 x 1 pixels. From then on tools find the fonts of the system. Throws Failure: cannot read
// when the library cannot be loaded, some frames failed when the machine has no OpenGL that paints without a window,
// wrong usage for a size that it cannot paint.
std::unique_ptr<ViewerSurface> MakeOffScreenSurface(std::int32_t width, std::int32_t height);

// What the library exports. The caller owns the surface.
using MakeOffScreenSurfaceFunction = ViewerSurface*(std::int32_t width, std::int32_t height);
inline constexpr const char* kMakeOffScreenSurface = "VBlurMakeOffScreenSurface";

}  // namespace vblur::host
