// The colour conversions over rows of pixels.
#pragma once

#include <cstdint>

#include "blur/ColourConversion.h"
#include "image/HvTexture.h"

namespace vblur {

// The YUV of a pixel as it is held, alpha as it stands.
template <std::int32_t Max, class Pixel>
constexpr Ri heldYuvOf(const Pixel& pixel) {
  const YuvInt c = yuvFromRgb(std::int32_t{pixel.red}, std::int32_t{pixel.green}, std::int32_t{pixel.blue});
  Ri held{};
  held.red = heldYuv<Max>(c.y);
  held.green = heldYuv<Max>(c.u);
  held.blue = heldYuv<Max>(c.v);
  held.alpha = pixel.alpha;
  return held;
}

// The low bits of each component.
template <class Pixel>
constexpr Pixel narrowed(const Ri& from) {
  Pixel pixel{};
  pixel.red = storeNarrow<ComponentOf<Pixel>>(from.red);
  pixel.green = storeNarrow<ComponentOf<Pixel>>(from.green);
  pixel.blue = storeNarrow<ComponentOf<Pixel>>(from.blue);
  pixel.alpha = storeNarrow<ComponentOf<Pixel>>(from.alpha);
  return pixel;
}

template <class Pixel>
constexpr bool fits(const Ri& from) {
  const Pixel pixel = narrowed<Pixel>(from);
  return pixel.red == from.red && pixel.green == from.green && pixel.blue == from.blue && pixel.alpha == from.alpha;
}

// n pixels of a run as YUV. False when one of them has lost bits on the way.
template <std::int32_t Max, class Pixel, class YuvPixel>
bool yuvRowFromRgbPlain(YuvPixel* to, const HvPixelRun<Pixel>& run, std::int32_t n) {
  const Pixel* pixel = run.first;
  bool allFit = true;
  for (std::int32_t i = 0; i < n; ++i, pixel += run.step) {
    const Ri held = heldYuvOf<Max>(*pixel);
    allFit = allFit && fits<YuvPixel>(held);
    to[i] = narrowed<YuvPixel>(held);
  }
  return allFit;
}

template <std::int32_t Max, class Pixel, class YuvPixel>
constexpr Pixel rgbOfHeldYuv(const YuvPixel& held) {
  const YuvFloat c{static_cast<float>(yuvFromHeld<Max>(held.red)), static_cast<float>(yuvFromHeld<Max>(held.green)),
                   static_cast<float>(yuvFromHeld<Max>(held.blue))};
  Pixel pixel{};
  rgbFromYuv(pixel, c, 0.0f, static_cast<float>(Max));
  pixel.alpha = storeNarrow<ComponentOf<Pixel>>(held.alpha);
  return pixel;
}

// The way back.
template <std::int32_t Max, class YuvPixel, class Pixel>
void rgbRowFromYuvPlain(Pixel* to, const HvPixelRun<YuvPixel>& run, std::int32_t n) {
  const YuvPixel* held = run.first;
  for (std::int32_t i = 0; i < n; ++i, held += run.step)
    to[i] = rgbOfHeldYuv<Max, Pixel>(*held);
}

}  // namespace vblur
