// Crop lines: four draggable lines across the limits; the picture between them is kept.
#pragma once

#include "overlay/HvTRectangle.h"

namespace vblur {

// Stays within its limits. Grabbed by its lines only, anywhere along them.
class HvTCropBox : public HvTRectangle {
 public:
  HvTCropBox(const char* name, float x0, float y0, float x1, float y1);

  HvPick Pick(HvPoint pos, HvPoint tolerance) override;
  void Draw() override;
  // The widget's box is that of the limits, so that no line is culled.
  void SetBox(float x0, float y0, float x1, float y1) override;

 private:
  void DrawEdge(Edge edge, HvColour own, HvPoint from, HvPoint to) const;
};

}  // namespace vblur
