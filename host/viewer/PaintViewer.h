// Paints a viewer: the frame, and the tools over it.
#pragma once

#include <cstddef>
#include <vector>

#include "host/hosted/HostImage.h"
#include "host/viewer/ViewGeometry.h"
#include "host/viewer/Viewer.h"
#include "host/viewer/ViewerSurface.h"

namespace vblur::host {

// The frame as the geometry shows it: the nearest pixel's colours, opaque, grey where there is no frame. Rows from
// the bottom up, four components of 8 bits a pixel; what does not fit 8 bits is limited.
std::vector<std::byte> ComposeFrame(const HostImage& frame, const ViewGeometry& geometry);

// The surface is as large as the geometry says. Throws Failure (some frames failed) when it cannot be painted on.
void PaintViewer(Viewer& viewer, const HostImage& frame, const ViewGeometry& geometry, ViewerSurface& surface);

// What was painted, as an opaque 8-bit picture. Throws likewise.
void ReadBack(ViewerSurface& surface, HostImage& into);

}  // namespace vblur::host
