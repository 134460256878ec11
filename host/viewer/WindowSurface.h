// The surface of a window, on Windows.
#pragma once

#include <cstdint>
#include <memory>

#include "host/viewer/ViewerSurface.h"
#include "platform/Window.h"

namespace vblur::host {

// At least 1 x 1 pixels, shown from the window's lower left corner on. Keeps its picture while the window is hidden or
// covered. The window is borrowed, and has at most one surface. Throws Failure: some frames failed if the machine has
// no OpenGL that paints on it, wrong usage for a size above its maximum.
std::unique_ptr<ViewerSurface> MakeWindowSurface(HWND window, std::int32_t width, std::int32_t height);

}  // namespace vblur::host
