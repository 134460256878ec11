// Hue, saturation and value: in integers, and as a change of float colours.
#pragma once

#include <array>
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

/// Red, green and blue of any sign.
using Colours = std::array<float, 3>;

/// The hue of one pixel, the saturation of a second and the value of a third.
Colours Recolour(const Colours& hue, const Colours& saturation, const Colours& value);

}  // namespace model
