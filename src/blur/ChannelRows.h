// Extracts one component of a row of pixels, and spreads it over all four: plain and by vector code.
#pragma once

#include <cstdint>
#include <type_traits>

#include "image/Arithmetic.h"
#include "image/HvTexture.h"
#include "image/VectorRun.h"

namespace vblur {

// Vector code for the depths that pictures have.
void extractRow(const R8* in, int channel, std::int32_t n, C8* out);
void extractRow(const R16* in, int channel, std::int32_t n, C16* out);

template <class Pixel, class Single>
constexpr bool hasChannelRows() {
  if constexpr (std::is_same_v<Single, C8>) return std::is_same_v<Pixel, R8>;
  return std::is_same_v<Single, C16> && std::is_same_v<Pixel, R16>;
}

template <int Channel, class Pixel, class Single>
void extractRowPlain(Single* to, const HvPixelRun<Pixel>& run, std::int32_t n) {
  const Pixel* pixel = run.first;
  for (std::int32_t i = 0; i < n; ++i, pixel += run.step)
    setComponent(to[i], 0, componentOf(*pixel, Channel));
}

// Extracts a component of n pixels of a run.
template <int Channel, class Pixel, class Single>
void extractRow(Single* to, const HvPixelRun<Pixel>& run, std::int32_t n) {
  if constexpr (hasChannelRows<Pixel, Single>()) {
    if (isVectorRun(run, to, n)) return extractRow(run.first, Channel, n, to);
  }
  extractRowPlain<Channel>(to, run, n);
}

// How a value becomes a pixel.
struct Spread {
  // A value other than 0 becomes the full scale.
  bool threshold = false;
  // Alpha is the full scale.
  bool opaque = false;
};

void spreadRow(const C8* in, const Spread& how, std::int32_t n, R8* out);
void spreadRow(const C16* in, const Spread& how, std::int32_t n, R16* out);

template <std::int32_t Max, class Pixel, class Single>
void spreadRowPlain(Pixel* to, const HvPixelRun<Single>& run, const Spread& how, std::int32_t n) {
  using Component = ComponentOf<Pixel>;
  const Single* single = run.first;
  for (std::int32_t i = 0; i < n; ++i, single += run.step) {
    const auto stored = componentOf(*single, 0);
    const auto value = static_cast<Component>(!how.threshold ? stored : stored != 0 ? Max : 0);
    to[i].red = to[i].green = to[i].blue = value;
    to[i].alpha = how.opaque ? static_cast<Component>(Max) : value;
  }
}

// Spreads n values of a run over all components.
template <std::int32_t Max, class Pixel, class Single>
void spreadRow(Pixel* to, const HvPixelRun<Single>& run, const Spread& how, std::int32_t n) {
  if constexpr (hasChannelRows<Pixel, Single>()) {
    if (isVectorRun(run, to, n)) return spreadRow(run.first, how, n, to);
  }
  spreadRowPlain<Max>(to, run, how, n);
}

}  // namespace vblur
