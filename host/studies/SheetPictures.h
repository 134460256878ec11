// The pictures of a contact sheet, scaled to its panels.
#pragma once

#include <cstdint>
#include <string>

#include "host/hosted/HostImage.h"
#include "host/studies/SheetPanels.h"

namespace vblur::host {

// The pictures of a sheet at panel size, and their caption.
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

// The size of a picture in a panel: as large as fits with its proportions kept, never enlarged.
SheetPoint PanelSize(const SheetPlan& plan, std::int32_t width, std::int32_t height);
// Scales a picture to another size, each component independently, as the effect handles them.
void ScalePicture(const HostImage& from, std::int32_t width, std::int32_t height, HostImage& to);
// Rotated by 180 degrees with colours permuted: the default second clip.
void MakeSecondClip(const HostImage& from, HostImage& to);

}  // namespace vblur::host
