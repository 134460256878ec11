// Paints a viewer: the frame with the tools over it.
#pragma once

#include <cstddef>
#include <vector>

#include "host/hosted/HostImage.h"
#include "host/viewer/ViewGeometry.h"
#include "host/viewer/Viewer.h"
#include "host/viewer/ViewerSurface.h"

namespace vblur::host {

// The frame as the geometry shows it: nearest pixel, opaque, grey outside the frame. Rows bottom-up, 8-bit RGBA; 16-bit
// components are clamped to 0..1.
std::vector<std::byte> ComposeFrame(const HostImage& frame, const ViewGeometry& geometry);

// The surface has the size of the geometry. Throws Failure (some frames failed) if it cannot be painted on.
void PaintViewer(Viewer& viewer, const HostImage& frame, const ViewGeometry& geometry, ViewerSurface& surface);

// The painted surface as an opaque 8-bit picture. Throws likewise.
void ReadBack(ViewerSurface& surface, HostImage& into);

}  // namespace vblur::host
