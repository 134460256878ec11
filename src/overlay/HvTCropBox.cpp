#include "overlay/HvTCropBox.h"

#include <GL/gl.h>

#include "overlay/Drawing.h"
#include "overlay/OverlayColours.h"

namespace vblur {
namespace {

constexpr HvColour kLeftColour{0.9f, 0.9f, 0.1f};
constexpr HvColour kRightColour{0.1f, 0.9f, 0.9f};
constexpr HvColour kTopColour{1.0f, 0.5f, 0.2f};
constexpr HvColour kBottomColour{0.9f, 0.1f, 0.9f};

}  // namespace

HvTCropBox::HvTCropBox(const char* name, float x0, float y0, float x1, float y1) : HvTRectangle(name, x0, y0, x1, y1) {
  KeepWithinLimits(true);
}

HvPick HvTCropBox::Pick(HvPoint pos, HvPoint tolerance) {
  return TakeEdges(EdgesAt(pos, tolerance, Limits()));
}

void HvTCropBox::SetBox(float x0, float y0, float x1, float y1) {
  NormaliseBox(x0, y0, x1, y1);
  PutBox({Limits().minX, Limits().minY}, {Limits().maxX - Limits().minX, Limits().maxY - Limits().minY});
}

void HvTCropBox::Draw() {
  const HvBox& across = Limits();
  glLineWidth(2.0f);
  DrawEdge(kLeft, kLeftColour, {X0(), across.minY}, {X0(), across.maxY});
  DrawEdge(kRight, kRightColour, {X1(), across.minY}, {X1(), across.maxY});
  DrawEdge(kBottom, kBottomColour, {across.minX, Y0()}, {across.maxX, Y0()});
  DrawEdge(kTop, kTopColour, {across.minX, Y1()}, {across.maxX, Y1()});
  glLineWidth(1.0f);
}

void HvTCropBox::DrawEdge(Edge edge, HvColour own, HvPoint from, HvPoint to) const {
  if (IsHovered()) {
    DrawDashedLine(from.x, from.y, to.x, to.y, own, IsOn(edge) ? kHvHighlight : own);
    return;
  }
  SetGlColour(IsPressed() && IsOn(edge) ? kHvHighlight : own);
  DrawLine(from.x, from.y, to.x, to.y);
}

}  // namespace vblur
