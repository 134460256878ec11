// Rows of pixels through the sRGB transfer function, by vector code for the machine's best instruction set.
#pragma once

#include <cstdint>

namespace vblur::host {

// Changes red, green and blue of `count` pixels of four floats, as LinearOf and EncodedOf of LinearLight.h do, to the
// last bit. Finite ones.
void DecodePixels(float* pixels, std::int32_t count);
void EncodePixels(float* pixels, std::int32_t count);

}  // namespace vblur::host
