// Draws contact sheets and plots. Part of the module that reads and writes picture files.
#pragma once

#include "host/hosted/EffectServer.h"
#include "host/hosted/ExecuteContext.h"
#include "host/hosted/HostImage.h"
#include "host/studies/KernelMeasure.h"
#include "host/studies/SheetPictures.h"

namespace vblur::host {

// Thread-safe.
class DrawingLibrary {
 public:
  virtual ~DrawingLibrary() = default;

  // Throws Failure (cannot read) when the text of the drawings below could not be drawn.
  virtual void RequireText() = 0;
  // A whole contact sheet, and a plot of an impulse response, as opaque 8-bit pictures. Throw as RequireText and
  // RenderInMemory do.
  virtual void DrawSheet(const SheetPlan& plan, const SheetPictures& pictures, const EffectFactory& makeEffect,
                         ExecuteContext& context, HostImage& sheet) = 0;
  virtual void DrawKernel(const KernelReport& report, HostImage& into) = 0;
};

// Loads the module at the first call. Throws Failure (cannot read) when that fails. From any thread.
DrawingLibrary& TheDrawingLibrary();

// What the module exports, by this name.
using DrawingLibraryFunction = DrawingLibrary*();
inline constexpr const char* kDrawingLibraryFunction = "VBlurDrawingLibrary";

}  // namespace vblur::host
