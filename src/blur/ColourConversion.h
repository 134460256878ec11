// The one colour conversion of the system, and the only table of its weights: luminance and two colour differences,
// forward in integers or floats, backward in floats.
#pragma once

#include <cstdint>

#include "image/Arithmetic.h"
#include "image/Pixels.h"

namespace vblur {

// What each of Y, U and V takes of red, green and blue, in 1/4096.
template <class T>
struct RgbWeights {
  T red, green, blue;
};
inline constexpr RgbWeights<std::int32_t> kRgbToY{1224, 2403, 468};
inline constexpr RgbWeights<std::int32_t> kRgbToU{-603, -1184, 1787};
inline constexpr RgbWeights<std::int32_t> kRgbToV{2518, -2107, -411};

// The same in floats, without signs: U takes red and green away from blue, V green and blue away from red.
inline constexpr RgbWeights<float> kRgbToYFloat{0.2989f, 0.5866f, 0.1144f};
inline constexpr RgbWeights<float> kRgbToUFloat{0.1473f, 0.2891f, 0.4364f};
inline constexpr RgbWeights<float> kRgbToVFloat{0.6149f, 0.5145f, 0.1004f};

// What red, green and blue take of Y, U and V, without signs: green takes U and V away, blue takes V away.
struct YuvWeights {
  float y, u, v;
};
inline constexpr YuvWeights kYuvToRed{1.0001f, 0.00014135384f, 1.1401706f};
inline constexpr YuvWeights kYuvToGreen{1.0001f, 0.3958304f, 0.5809656f};
inline constexpr YuvWeights kYuvToBlue{1.0001001f, 2.0292995f, 0.0000229211f};

struct YuvInt {
  std::int32_t y, u, v;
  friend bool operator==(const YuvInt&, const YuvInt&) = default;
};

struct YuvFloat {
  float y, u, v;
};

// From R, G, B of either depth, by an arithmetic shift. Components are at most 2^15 and the weights of a row below 2^13
// in sum, so that every sum stays below 2^28.
constexpr YuvInt yuvFromRgb(std::int32_t r, std::int32_t g, std::int32_t b) {
  const auto weighted = [&](const RgbWeights<std::int32_t>& w) { return (w.red * r + w.green * g + w.blue * b) >> 12; };
  return {weighted(kRgbToY), weighted(kRgbToU), weighted(kRgbToV)};
}

// In floats, for pixels with a gain.
constexpr YuvFloat yuvFromRgb(float r, float g, float b) {
  return {r * kRgbToYFloat.red + g * kRgbToYFloat.green + b * kRgbToYFloat.blue,
          b * kRgbToUFloat.blue - (g * kRgbToUFloat.green + r * kRgbToUFloat.red),
          r * kRgbToVFloat.red - g * kRgbToVFloat.green - b * kRgbToVFloat.blue};
}

// Red, green and blue in floats, with an alpha of 0.
constexpr Rf rgbFromYuv(const YuvFloat& c) {
  Rf rgb{};
  rgb.red = c.u * kYuvToRed.u + c.y * kYuvToRed.y + c.v * kYuvToRed.v;
  rgb.green = c.y * kYuvToGreen.y - c.u * kYuvToGreen.u - c.v * kYuvToGreen.v;
  rgb.blue = c.u * kYuvToBlue.u + c.y * kYuvToBlue.y - c.v * kYuvToBlue.v;
  return rgb;
}

// The same, each limited to low..high and truncated.
template <class Pixel>
constexpr void rgbFromYuv(Pixel& pixel, const YuvFloat& c, float low, float high) {
  const auto store = [&](float v) { return storeNarrow<ComponentOf<Pixel>>(truncToInt(clampTo(v, low, high))); };
  const Rf rgb = rgbFromYuv(c);
  pixel.red = store(rgb.red);
  pixel.green = store(rgb.green);
  pixel.blue = store(rgb.blue);
  pixel.alpha = 0;
}

// A pixel of floats whose luminance and colour differences change to `c`: the colours of the change are added to it.
// The two conversions are not each other's exact inverse; so a pixel that does not change keeps every bit.
constexpr Rf withYuv(const Rf& pixel, const YuvFloat& c) {
  const YuvFloat own = yuvFromRgb(pixel.red, pixel.green, pixel.blue);
  const Rf change = rgbFromYuv({c.y - own.y, c.u - own.u, c.v - own.v});
  Rf result = pixel;
  result.red += change.red;
  result.green += change.green;
  result.blue += change.blue;
  return result;
}

// A stored YUV value: half of value + Max, which loses the lowest bit. At 8 bits the stored values lie
// in 0..255; at 16 bits pixels beyond One and negative ones take V from -3760 to 36527.
template <std::int32_t Max>
constexpr std::int32_t heldYuv(std::int32_t value) {
  return truncToInt(static_cast<double>(value + Max) * 0.5);
}

template <std::int32_t Max>
constexpr std::int32_t yuvFromHeld(std::int32_t held) {
  return wrapSub(wrapMul(held, 2), Max);
}

}  // namespace vblur
