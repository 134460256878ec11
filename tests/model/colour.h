// Conversion between RGB and YUV: forward in integers and in floats, backward in floats.
#pragma once

#include <array>
#include <cstdint>

#include "picture.h"

namespace model {

struct Yuv {
  std::int32_t y, u, v;
};

struct YuvFloat {
  float y, u, v;
};

/// Q12 matrix with an arithmetic shift: negative sums round down, not toward zero.
Yuv ToYuv(std::int32_t r, std::int32_t g, std::int32_t b);

YuvFloat ToYuvFloat(float r, float g, float b);

/// Red, green and blue in floats.
std::array<float, 3> RgbOfYuv(const YuvFloat& yuv);

/// R, G and B clamped to 0..top and truncated. Alpha is 0; the caller restores it.
Pixel FromYuv(const YuvFloat& yuv, std::int32_t top);

}  // namespace model
