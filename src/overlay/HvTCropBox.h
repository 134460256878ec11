// Four lines across the whole of their limits, each of which follows the pen: what lies between them is kept.
#pragma once

#include "overlay/HvTRectangle.h"

namespace vblur {

// Keeps within its limits, and is grabbed by its lines alone, anywhere along them.
class HvTCropBox : public HvTRectangle {
 public:
  HvTCropBox(const char* name, float x0, float y0, float x1, float y1);

  HvPick Pick(HvPoint pos, HvPoint tolerance) override;
  void Draw() override;
  // The widget's own box is the limits, so that no line is ever culled.
  void SetBox(float x0, float y0, float x1, float y1) override;

 private:
  void DrawEdge(Edge edge, HvColour own, HvPoint from, HvPoint to) const;
};

}  // namespace vblur
