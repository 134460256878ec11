// Small pictures for the tests of this folder, and the model's view of the same pictures.
#pragma once

#include <cstdint>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "image/HvTexture.h"
#include "image/Pixels.h"
#include "tests/model/depth.h"
#include "tests/model/picture.h"
#include "tests/support/Canvas.h"
#include "tests/support/ModelBridge.h"
#include "tests/support/Random.h"
#include "tests/support/TypeNames.h"

namespace vblur::test {

// The depths of typed tests.
using Depths = testing::Types<R8, R16>;

// For what floats do as well.
using DepthsAndFloats = testing::Types<R8, R16, Rf>;

template <class Pixel>
inline constexpr model::Depth kDepth = modelDepth<Pixel>();

template <class Pixel>
constexpr Pixel Make(std::int32_t red, std::int32_t green, std::int32_t blue, std::int32_t alpha) {
  using Component = ComponentOf<Pixel>;
  Pixel result{};
  result.red = static_cast<Component>(red);
  result.green = static_cast<Component>(green);
  result.blue = static_cast<Component>(blue);
  result.alpha = static_cast<Component>(alpha);
  return result;
}

constexpr Rf MakeFloat(float red, float green, float blue, float alpha) {
  Rf result{};
  result.red = red;
  result.green = green;
  result.blue = blue;
  result.alpha = alpha;
  return result;
}

template <class Pixel>
model::Pixel ModelOf(const Pixel& pixel) {
  return modelPixel(pixel);
}

template <class Pixel>
Pixel FromModel(const model::Pixel& p) {
  if constexpr (std::is_same_v<Pixel, Rf>) {
    return MakeFloat(model::FloatOf(p[0]), model::FloatOf(p[1]), model::FloatOf(p[2]), model::FloatOf(p[3]));
  } else {
    return Make<Pixel>(p[0], p[1], p[2], p[3]);
  }
}

// Pixels over the whole range; one component in six is 0, 1, a half or about One. Of floats one pixel in six is grey.
template <class Pixel>
Pixel RandomPixel(Random& random) {
  Pixel pixel = randomPixel(random, storageRange<Pixel>());
  if constexpr (std::is_same_v<Pixel, Rf>) {
    if (random.oneIn(6)) pixel.green = pixel.blue = pixel.red;
  }
  for (int c = 0; c < Pixel::kComponents; ++c) {
    if (!random.oneIn(6)) continue;
    pixel[c] = static_cast<ComponentOf<Pixel>>(random.oneOf({0, 1, Pixel::kOne, Pixel::kOne - 1, Pixel::kOne / 2}));
  }
  return pixel;
}

template <class Pixel, class Accum>
void FillRandom(HvTexture<Pixel, Accum>& texture, Random& random) {
  for (std::int32_t y = 0; y < texture.height(); ++y) {
    for (std::int32_t x = 0; x < texture.width(); ++x) {
      *texture.at(x, y) = RandomPixel<Pixel>(random);
    }
  }
}

template <class Pixel, class Accum>
void Fill(HvTexture<Pixel, Accum>& texture, const Pixel& pixel) {
  for (std::int32_t y = 0; y < texture.height(); ++y) {
    for (std::int32_t x = 0; x < texture.width(); ++x)
      *texture.at(x, y) = pixel;
  }
}

template <class Pixel, class Accum>
std::vector<Pixel> PixelsOf(const HvTexture<Pixel, Accum>& texture) {
  std::vector<Pixel> pixels;
  for (std::int32_t y = 0; y < texture.height(); ++y) {
    for (std::int32_t x = 0; x < texture.width(); ++x)
      pixels.push_back(*texture.at(x, y));
  }
  return pixels;
}

// The model's picture records whether the texture has memory.
template <class Pixel, class Accum>
model::Picture ModelOf(const HvTexture<Pixel, Accum>& texture) {
  model::Picture picture = modelPicture(texture);
  picture.hasMemory = texture.data != nullptr;
  return picture;
}

// How many pixels differ in their bits from the model's picture of the same size.
template <class Pixel, class Accum>
int CountDifferent(const HvTexture<Pixel, Accum>& texture, const model::Picture& expected) {
  int different = 0;
  for (std::int32_t y = 0; y < texture.height(); ++y) {
    for (std::int32_t x = 0; x < texture.width(); ++x) {
      different += ModelOf(*texture.at(x, y)) != model::Stored(expected, x, y);
    }
  }
  return different;
}

}  // namespace vblur::test
