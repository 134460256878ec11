// Hue, saturation and value in integers.
#pragma once

#include <cstdint>

#include "depth.h"
#include "picture.h"

namespace model {

/// The hue circle is six times `one` wide, saturation runs to `one`, value is the greatest component.
struct Hsv {
  std::int32_t hue, saturation, value;
};

/// Operands may be outside the format's range: the arithmetic wraps at 32 bits.
Hsv ToHsv(Depth depth, std::int32_t r, std::int32_t g, std::int32_t b);

/// R, G and B clamped to the format. Alpha is 0; the caller sets it.
Pixel FromHsv(Depth depth, const Hsv& hsv);

}  // namespace model
