// The drawing library of a platform, whose texts a painter of its own draws.
#pragma once

#include "host/drawing/ContactSheet.h"
#include "host/drawing/KernelPlot.h"
#include "host/studies/DrawingLibrary.h"

namespace vblur::host {

// Makes a Painter, a TextPainter, for each drawing: its constructor throws when there is no font.
template <class Painter>
class PaintedDrawings final : public DrawingLibrary {
 public:
  void RequireText() override { const Painter text; }
  void DrawSheet(const SheetPlan& plan, const SheetPictures& pictures, const EffectFactory& makeEffect,
                 ExecuteContext& context, HostImage& sheet) override {
    host::DrawSheet(plan, pictures, Painter(), makeEffect, context, sheet);
  }
  void DrawKernel(const KernelReport& report, HostImage& into) override { host::DrawKernel(report, Painter(), into); }
};

}  // namespace vblur::host
