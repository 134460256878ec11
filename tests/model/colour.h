// The one conversion between RGB and YUV: forward in whole numbers and in float, backward in float.
#pragma once

#include <cstdint>

#include "picture.h"

namespace model {

struct Yuv {
  std::int32_t y, u, v;
};

struct YuvFloat {
  float y, u, v;
};

/// Q12 matrix with an arithmetic shift: a negative sum goes down, not toward zero.
Yuv ToYuv(std::int32_t r, std::int32_t g, std::int32_t b);

YuvFloat ToYuvFloat(float r, float g, float b);

/// Each of R, G, B limited to 0..top and truncated. Alpha is 0: whoever calls has the right one.
Pixel FromYuv(const YuvFloat& yuv, std::int32_t top);

}  // namespace model
