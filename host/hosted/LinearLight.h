// Colours between the sRGB transfer function and linear light, in pictures of floats. The powers are computed by
// multiplications alone, which are the same on every machine; those of the system's library are not.
#pragma once

#include "host/hosted/HostImage.h"

namespace vblur::host {

// One component, within a unit in its last place. Beyond 1.0 the function goes on, light up to 65504; below 0 it is
// mirrored. 0 and 1 stay. Whole-number samples of 8 and 16 bits come back from light as they were.
float LinearOf(float encoded);
float EncodedOf(float linear);

// Change red, green and blue in rows of a four-component picture of 32 bits. Of premultiplied colours, those that alpha
// was multiplied into: they are divided by it before, and multiplied by it after.
void DecodeColours(HostImage& image, HostRows rows, bool premultiplied);
void EncodeColours(HostImage& image, HostRows rows, bool premultiplied);

}  // namespace vblur::host
