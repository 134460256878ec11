// What PNG files hold of frames: colours of 0 to 1, and amounts that a grey picture gives back.
#pragma once

#include <cstdint>

#include "tests/differential/DrawnFrame.h"

namespace vblur::differential {

// Makes the frame one that PNG files hold, and names its pictures so.
void LimitToPng(DrawnFrame& frame);
// What a PNG file gives back of a picture of a depth.
void LimitToPng(DrawnPicture& picture, std::int32_t depth);

// The colour in steps of 1/16384 that is nearest to an amount of a 16-bit mask.
std::int16_t ColourOfAmount(std::int32_t amount);

}  // namespace vblur::differential
