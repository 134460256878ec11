// Draws a contact sheet: every panel rendered by the effect, with a label under it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/drawing/Canvas.h"
#include "host/drawing/TextPainter.h"
#include "host/hosted/FrameRender.h"
#include "host/studies/SheetPictures.h"

namespace vblur::host {

// The layout of a sheet, in pixels from the upper left corner.
struct SheetLayout {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::vector<std::string> head;   // the lines between the title and the panels
  std::vector<SheetPoint> panels;  // the upper left corner of each picture
  std::int32_t cellWidth = 0;      // at least the width of a picture; labels are centred in it
};

SheetLayout LayOutSheet(const SheetPlan& plan, const SheetPictures& pictures, const TextPainter& text);
// What a panel shows; the job of one frame.
void RenderPanel(const SheetPlan& plan, const SheetPanel& panel, const SheetPictures& pictures,
                 const EffectFactory& makeEffect, ExecuteContext& context, HostImage& into);
// The whole sheet, as an opaque 8-bit picture. Throws as RenderInMemory does.
void DrawSheet(const SheetPlan& plan, const SheetPictures& pictures, const TextPainter& text,
               const EffectFactory& makeEffect, ExecuteContext& context, HostImage& sheet);

}  // namespace vblur::host
