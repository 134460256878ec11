// Pixels of floats for the tests of this folder.
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

#include "composite/HvMerge.h"
#include "tests/composite/Pictures.h"

namespace vblur::test {

// Any finite float, each exponent as often as the next.
inline float AnyFinite(Random& random) {
  const auto exponent = static_cast<std::uint32_t>(random.within(0, 254));
  const auto rest = static_cast<std::uint32_t>(random.within(0, (1 << 24) - 1));
  return std::bit_cast<float>((rest >> 23) << 31 | exponent << 23 | (rest & 0x7fffff));
}

// Mostly in 0..1; sometimes an end of it, above, below, or tiny.
inline float AnyCarried(Random& random) {
  switch (random.within(0, 9)) {
    case 0: return random.oneOf({0.0f, -0.0f, 1.0f, 0.5f, 1e-40f, 65504.0f, -65504.0f, 2.0f, -1.0f});
    case 1: return random.between(-2.0f, 0.0f);
    case 2: return random.between(1.0f, 100.0f);
    case 3: return random.between(-1e-9f, 1e-9f);
    default: return random.between(0.0f, 1.0f);
  }
}

// A pixel of such components; one in four is grey.
template <class Component>
Rf FloatPixel(Random& random, const Component& component) {
  Rf pixel = MakeFloat(component(random), component(random), component(random), component(random));
  if (random.oneIn(4)) pixel.green = pixel.blue = pixel.red;
  return pixel;
}

inline bool IsFinite(const Rf& p) {
  return std::isfinite(p.red) && std::isfinite(p.green) && std::isfinite(p.blue) && std::isfinite(p.alpha);
}

// Whether each component of p lies between those of a and b.
inline bool LiesBetween(const Rf& p, const Rf& a, const Rf& b) {
  bool between = true;
  for (int c = 0; c < 4; ++c)
    between = between && p[c] >= std::min(a[c], b[c]) && p[c] <= std::max(a[c], b[c]);
  return between;
}

// One pixel by the whole combiner.
template <class Pixel>
Pixel MergedPixel(std::int32_t method, float blend, float gainA, float gainB, const Pixel& a, const Pixel& b) {
  HvTexture<Pixel, Rf> textureA(1, 1);
  HvTexture<Pixel, Rf> textureB(1, 1);
  HvTexture<Pixel, Rf> out(1, 1);
  *textureA.at(0, 0) = a;
  *textureB.at(0, 0) = b;
  HvMerge<Pixel, Rf, Pixel::kOne> merge;
  merge.rgbMode = 1;
  merge.method = method;
  merge.setGains(gainA, gainB);
  merge.setBlend(blend);
  merge.process(&textureA, &textureB, &out);
  return *out.at(0, 0);
}

}  // namespace vblur::test
