// Draws a contact sheet: every panel rendered by the effect, with a label under it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/Canvas.h"
#include "host/FrameRender.h"
#include "host/SheetPanels.h"
#include "host/TextPainter.h"

namespace vblur::host {

// The pictures of a sheet at panel size, and what is said about them.
struct SheetPictures {
  HostImage input;
  HostImage input2;  // of the same size and depth; for transitions only
  bool associatedAlpha = false;
  std::string caption;
};

struct SheetPoint {
  std::int32_t x = 0;
  std::int32_t y = 0;
};

// Where everything stands, in pixels from the upper left corner.
struct SheetLayout {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::vector<std::string> head;   // the lines between the title and the panels
  std::vector<SheetPoint> panels;  // the upper left corner of each picture
  std::int32_t cellWidth = 0;      // at least as wide as a picture; its label stands in the middle of it
};

// The size of a picture in the room for one: as large as fits, in proportion, never larger than it is.
SheetPoint PanelSize(const SheetPlan& plan, std::int32_t width, std::int32_t height);
// A picture of another size, each component by itself as the effect handles them.
void ScalePicture(const HostImage& from, std::int32_t width, std::int32_t height, HostImage& to);
// Turned upside down with red, green and blue exchanged: a second clip for those who have none.
void MakeSecondClip(const HostImage& from, HostImage& to);

SheetLayout LayOutSheet(const SheetPlan& plan, const SheetPictures& pictures, const TextPainter& text);
// What a panel shows; the job of one frame.
void RenderPanel(const SheetPlan& plan, const SheetPanel& panel, const SheetPictures& pictures,
                 const EffectFactory& makeEffect, ExecuteContext& context, HostImage& into);
// The whole sheet, as an opaque 8-bit picture. Throws as RenderInMemory does.
void DrawSheet(const SheetPlan& plan, const SheetPictures& pictures, const TextPainter& text,
               const EffectFactory& makeEffect, ExecuteContext& context, HostImage& sheet);

}  // namespace vblur::host
