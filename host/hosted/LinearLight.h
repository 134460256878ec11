// Colours between the sRGB transfer function and linear light, in pictures of 16 bits. Values go through tables, which
// are the same on every machine: no entry lies nearer than 3e-6 to where its rounding changes, which any std::pow
// meets.
#pragma once

#include <cstdint>

#include "host/hosted/HostImage.h"

namespace vblur::host {

// One component, 16384 for 1.0; to nearest. Beyond 1.0 the function goes on, limited to 32767; below 0 it is mirrored.
// EncodedOf gives back every 8-bit sample that LinearOf was given.
std::int16_t LinearOf(std::int16_t encoded);
std::int16_t EncodedOf(std::int16_t linear);

// Change red, green and blue of a four-component picture of 16 bits. Of premultiplied colours, those that alpha was
// multiplied into: they are divided by it before, and multiplied by it after.
void DecodeColours(HostImage& image, bool premultiplied);
void EncodeColours(HostImage& image, bool premultiplied);

}  // namespace vblur::host
