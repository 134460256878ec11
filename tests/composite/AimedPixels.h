// Pixels at which vector code and its plain twin could differ.
#pragma once

#include <cstdint>
#include <cstring>

#include "tests/composite/FloatPixels.h"
#include "tests/composite/Pictures.h"
#include "tests/support/CpuLevel.h"
#include "tests/support/KernelRuns.h"

namespace vblur::test {

// Greys, blacks, ends of the range, two equal components, random pixels, and neighbours of all of these.
template <class Pixel>
Pixel AimedIntegerPixel(Random& random) {
  using Component = ComponentOf<Pixel>;
  Pixel pixel = RandomPixel<Pixel>(random);
  const auto any = [&] { return random.oneOf({Pixel::kMin, Pixel::kMax, 0, 1, Pixel::kOne, Pixel::kOne + 1, 77}); };
  switch (random.within(0, 6)) {
    case 0: pixel = Make<Pixel>(any(), any(), any(), any()); break;
    case 1: pixel.red = pixel.green = pixel.blue = static_cast<Component>(any()); break;
    case 2: pixel[random.within(0, 2)] = pixel[random.within(0, 2)]; break;
    case 3:
      pixel[random.within(0, 3)] = static_cast<Component>(pixel[random.within(0, 3)] + random.within(-1, 1));
      break;
    case 4: pixel = Make<Pixel>(random.within(-2, 2), random.within(-2, 2), random.within(-2, 2), any()); break;
    default: break;
  }
  return pixel;
}

// The same of floats: any finite ones, and those that pictures have.
template <class Pixel>
Pixel AimedPixel(Random& random) {
  if constexpr (Pixel::kIntegral) {
    return AimedIntegerPixel<Pixel>(random);
  } else {
    return random.oneIn(4) ? FloatPixel(random, AnyFinite) : FloatPixel(random, AnyCarried);
  }
}

template <class Pixel, class Accum>
void FillAimed(HvTexture<Pixel, Accum>& texture, Random& random) {
  for (std::int32_t y = 0; y < texture.height(); ++y) {
    for (std::int32_t x = 0; x < texture.width(); ++x)
      *texture.at(x, y) = AimedPixel<Pixel>(random);
  }
}

template <class Pixel, class Accum>
void CopyPixels(const HvTexture<Pixel, Accum>& from, HvTexture<Pixel, Accum>& to) {
  for (std::int32_t y = 0; y < from.height(); ++y)
    std::memcpy(to.at(0, y), from.at(0, y), sizeof(Pixel) * static_cast<std::size_t>(from.width()));
}

// What `run` returns in plain code.
template <class Run>
auto AtTwin(const Run& run) {
  const CpuLevel twin("twin");
  return run();
}

}  // namespace vblur::test
