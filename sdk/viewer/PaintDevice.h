// What the thread paints on between the begin and the end of a surface's OpenGL paint, whatever window system the
// surface belongs to.
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
