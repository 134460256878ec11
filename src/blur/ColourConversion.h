// The one colour conversion of the system: luminance and two colour differences, forward in integers
// or floats, backward in floats.
#pragma once

#include <cstdint>

#include "image/Arithmetic.h"
#include "image/Pixels.h"

namespace vblur {

struct YuvInt {
  std::int32_t y, u, v;
  friend bool operator==(const YuvInt&, const YuvInt&) = default;
};

struct YuvFloat {
  float y, u, v;
};

// From R, G, B of either depth; weights in 1/4096, arithmetic shift. Components are at most 2^15 and
// the weights of a row below 2^13 in sum, so that every sum stays below 2^28.
constexpr YuvInt yuvFromRgb(std::int32_t r, std::int32_t g, std::int32_t b) {
  return {(1224 * r + 2403 * g + 468 * b) >> 12, (1787 * b - 1184 * g - 603 * r) >> 12,
          (2518 * r - 2107 * g - 411 * b) >> 12};
}

// The same for pixels with a gain.
constexpr YuvFloat yuvFromRgb(float r, float g, float b) {
  return {r * 0.2989f + g * 0.5866f + b * 0.1144f, b * 0.4364f - (g * 0.2891f + r * 0.1473f),
          r * 0.6149f - g * 0.5145f - b * 0.1004f};
}

// Writes red, green and blue, each limited to low..high and truncated, and an alpha of 0.
template <class Pixel>
constexpr void rgbFromYuv(Pixel& pixel, const YuvFloat& c, float low, float high) {
  const auto store = [&](float v) { return storeNarrow<ComponentOf<Pixel>>(truncToInt(clampTo(v, low, high))); };
  pixel.red = store(c.u * 0.00014135384f + c.y * 1.0001f + c.v * 1.1401706f);
  pixel.green = store(c.y * 1.0001f - c.u * 0.3958304f - c.v * 0.5809656f);
  pixel.blue = store(c.u * 2.0292995f + c.y * 1.0001001f - c.v * 0.0000229211f);
  pixel.alpha = 0;
}

// How a YUV picture holds a value: in the upper half of the range, its lowest bit lost. At 8 bits the
// held values lie in 0..255; at 16 bits pixels beyond One and negative ones take V from -3760 to 36527.
template <std::int32_t Max>
constexpr std::int32_t heldYuv(std::int32_t value) {
  return truncToInt(static_cast<double>(value + Max) * 0.5);
}

template <std::int32_t Max>
constexpr std::int32_t yuvFromHeld(std::int32_t held) {
  return wrapSub(wrapMul(held, 2), Max);
}

}  // namespace vblur
