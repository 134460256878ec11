// Creates off-screen surfaces. The painting library, with the OpenGL driver and font libraries, is loaded on first use.
#pragma once

#include <cstdint>
#include <memory>

#include "host/viewer/ViewerSurface.h"

namespace vblur::host {

// At least 1 x 1 pixels. Also makes the system's fonts available to tools. Throws Failure: cannot read if the library
// cannot be loaded, some frames failed if the machine has no off-screen OpenGL, wrong usage for a size above its
// maximum.
std::unique_ptr<ViewerSurface> MakeOffScreenSurface(std::int32_t width, std::int32_t height);

// The library's export. The caller owns the surface.
using MakeOffScreenSurfaceFunction = ViewerSurface*(std::int32_t width, std::int32_t height);
inline constexpr const char* kMakeOffScreenSurface = "VBlurMakeOffScreenSurface";

}  // namespace vblur::host
