// The colour conversions over rows of pixels, plain and by vector code.
#pragma once

#include <cstdint>
#include <type_traits>

#include "blur/ColourConversion.h"
#include "image/HvTexture.h"
#include "image/VectorRun.h"

namespace vblur {

// The YUV of a pixel of floats, with its alpha. It is stored as it is.
constexpr Rf yuvOf(const Rf& pixel) {
  const YuvFloat c = yuvFromRgb(pixel.red, pixel.green, pixel.blue);
  Rf yuv{};
  yuv.red = c.y;
  yuv.green = c.u;
  yuv.blue = c.v;
  yuv.alpha = pixel.alpha;
  return yuv;
}

// The stored YUV of a pixel of integers, with its alpha.
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

// Vector code, to a full scale of kMax: n pixels to YUV and back. `in` may be `out`. False when a V does not fit, as at
// 16 bits where red is bright and the others are far below zero.
bool yuvRow(const R8* in, std::int32_t n, R8* out);
bool yuvRow(const R16* in, std::int32_t n, R16* out);
void rgbRow(const R8* in, std::int32_t n, R8* out);
void rgbRow(const R16* in, std::int32_t n, R16* out);

template <class From, class To, std::int32_t Max>
constexpr bool hasColourRows() {
  if constexpr (std::is_same_v<From, To> && (std::is_same_v<From, R8> || std::is_same_v<From, R16>)) {
    return Max == From::kMax;
  } else {
    return false;
  }
}

template <std::int32_t Max, class Pixel, class YuvPixel>
bool yuvRowPlain(YuvPixel* to, const HvPixelRun<Pixel>& run, std::int32_t n) {
  const Pixel* pixel = run.first;
  bool allFit = true;
  for (std::int32_t i = 0; i < n; ++i, pixel += run.step) {
    const Ri held = heldYuvOf<Max>(*pixel);
    allFit = allFit && fits<YuvPixel>(held);
    to[i] = narrowed<YuvPixel>(held);
  }
  return allFit;
}

// n pixels of a run to YUV. False when one of them does not fit.
template <std::int32_t Max, class Pixel, class YuvPixel>
bool yuvRowFromRgb(YuvPixel* to, const HvPixelRun<Pixel>& run, std::int32_t n) {
  if constexpr (hasColourRows<Pixel, YuvPixel, Max>()) {
    if (isVectorRun(run, to, n)) return yuvRow(run.first, n, to);
  }
  return yuvRowPlain<Max>(to, run, n);
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

template <std::int32_t Max, class YuvPixel, class Pixel>
void rgbRowPlain(Pixel* to, const HvPixelRun<YuvPixel>& run, std::int32_t n) {
  const YuvPixel* held = run.first;
  for (std::int32_t i = 0; i < n; ++i, held += run.step)
    to[i] = rgbOfHeldYuv<Max, Pixel>(*held);
}

// n pixels of YUV to colours.
template <std::int32_t Max, class YuvPixel, class Pixel>
void rgbRowFromYuv(Pixel* to, const HvPixelRun<YuvPixel>& run, std::int32_t n) {
  if constexpr (hasColourRows<YuvPixel, Pixel, Max>()) {
    if (isVectorRun(run, to, n)) return rgbRow(run.first, n, to);
  }
  rgbRowPlain<Max>(to, run, n);
}

}  // namespace vblur
