// Hue, saturation and value, all in whole numbers.
#pragma once

#include <cstdint>

#include "depth.h"
#include "picture.h"

namespace model {

/// The hue circle is six times `one` wide, saturation runs to `one`, value is the greatest component.
struct Hsv {
  std::int32_t hue, saturation, value;
};

/// Operands may lie outside the format's range: the arithmetic wraps at 32 bits.
Hsv ToHsv(Depth depth, std::int32_t r, std::int32_t g, std::int32_t b);

/// Each of R, G, B limited to the format. Alpha is 0: whoever calls has the right one.
Pixel FromHsv(Depth depth, const Hsv& hsv);

}  // namespace model
