// Random pictures and settings for the calls of the library.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "image/Pixels.h"
#include "tests/support/Canvas.h"
#include "tests/support/Random.h"
#include "vblur/Blur.h"

namespace vblur::test {

template <class Pixel>
inline constexpr Format kFormatOf = sizeof(Pixel) == 4   ? Format::RGBA8
                                    : sizeof(Pixel) == 8 ? Format::RGBAS2_14
                                                         : Format::RGBAF32;
// What the filter of a pixel type sums in.
template <class Pixel>
using AccumOf = std::conditional_t<Pixel::kIntegral, Ri, Rf>;

template <class Pixel>
Picture pictureOf(Canvas<Pixel>& canvas) {
  HvTexture<Pixel, AccumOf<Pixel>> texture;
  canvas.wrapIn(texture);
  return {texture.data, kFormatOf<Pixel>, texture.width(), texture.height(),
          static_cast<std::ptrdiff_t>(texture.stride)};
}

inline ConstPicture asSource(const Picture& picture) {
  return {picture.pixels, picture.format, picture.width, picture.height, picture.stride};
}

template <class Pixel>
Settings randomSettings(Random& random, std::int32_t width, std::int32_t height) {
  const auto size = [&random] {
    return random.oneIn(4) ? random.oneOf({0.0, 1.5, 3.0, 16.5, 24.0, 190.0, 1e30})
                           : static_cast<double>(random.between(0.0f, 30.0f));
  };
  Settings settings;
  settings.sizeX = size();
  settings.sizeY = size();
  settings.channels = static_cast<Channels>(random.within(VBLUR_RGB, VBLUR_V));
  settings.edgeX = static_cast<Edge>(random.within(VBLUR_EDGE_COLOUR, VBLUR_EDGE_WRAP));
  settings.edgeY = static_cast<Edge>(random.within(VBLUR_EDGE_COLOUR, VBLUR_EDGE_WRAP));
  const Pixel outside = randomPixel(random, storageRange<Pixel>());
  for (int c = 0; c < 4; ++c) {
    if constexpr (Pixel::kIntegral) {
      settings.outside[static_cast<std::size_t>(c)] = outside[c];
    } else {
      settings.outsideF32[static_cast<std::size_t>(c)] = outside[c];
    }
  }
  if (random.oneIn(2)) {
    Region region{random.within(0, width - 1), random.within(0, height - 1)};
    region.width = random.within(1, width - region.x);
    region.height = random.within(1, height - region.y);
    settings.region = region;
  }
  settings.onThisThread = random.oneIn(2);
  return settings;
}

}  // namespace vblur::test
