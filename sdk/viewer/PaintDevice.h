// The thread's paint target between vwSurfaceBeginRenderOpenGL and vwSurfaceEndRenderOpenGL.
#pragma once

#include "platform/GlFont.h"
#include "platform/Viewer.h"

namespace vblur::host {

struct PaintDevice {
  IVWSurface* surface = nullptr;
  HFONT font = nullptr;
};

PaintDevice& CurrentDevice();

}  // namespace vblur::host
