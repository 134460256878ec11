// Renders a drawn frame with the model.
#pragma once

#include "tests/differential/DrawnFrame.h"

namespace vblur::differential {

// The output after the frame.
DrawnPicture RenderByModel(const DrawnFrame& frame);

}  // namespace vblur::differential
