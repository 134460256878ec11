// Renders a drawn frame with the effect, as the stand-alone host does.
#pragma once

#include "host/hosted/HostImage.h"
#include "tests/differential/DrawnFrame.h"

namespace vblur::differential {

// The output after the frame.
DrawnPicture RenderByEffect(const DrawnFrame& frame);

// Converts a drawn picture to the host's, placed by its record, and back.
void ToHostImage(const DrawnPicture& picture, std::int32_t depth, const host::ImageRecord& record,
                 host::HostImage& image);
DrawnPicture FromHostImage(const host::HostImage& image);

}  // namespace vblur::differential
