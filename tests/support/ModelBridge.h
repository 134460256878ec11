// Converts textures to pictures of the independent model, and compares the two bit for bit.
#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "image/HvTexture.h"
#include "tests/model/depth.h"
#include "tests/model/picture.h"

namespace vblur::test {

inline model::Axis modelAxis(const HvTexAxis& axis) {
  model::Axis result;
  result.size = axis.size;
  result.origin = axis.originI;
  result.writeOrigin = axis.writeOrigin;
  result.edge = axis.edgeMethod;
  result.lo = axis.lo;
  result.hi = axis.hi;
  return result;
}

template <class Pixel>
model::Pixel modelPixel(const Pixel& pixel) {
  model::Pixel result{};
  for (int c = 0; c < PixelTraits<Pixel>::kComponents; ++c)
    if constexpr (std::is_same_v<ComponentOf<Pixel>, float>) {
      result[static_cast<std::size_t>(c)] = std::bit_cast<std::int32_t>(componentOf(pixel, c));
    } else {
      result[static_cast<std::size_t>(c)] = componentOf(pixel, c);
    }
  return result;
}

template <class Pixel, class Accum>
model::Picture modelPicture(const HvTexture<Pixel, Accum>& texture) {
  model::Picture picture = model::Blank(modelAxis(texture.horizontal), modelAxis(texture.vertical));
  picture.outside = modelPixel(texture.outsideColour);
  for (int y = 0; y < texture.height(); ++y) {
    for (int x = 0; x < texture.width(); ++x)
      model::Stored(picture, x, y) = modelPixel(*texture.at(x, y));
  }
  return picture;
}

template <class Pixel>
constexpr model::Depth modelDepth() {
  if constexpr (std::is_same_v<ComponentOf<Pixel>, float>) {
    return model::Depth::Float;
  } else if constexpr (sizeof(ComponentOf<Pixel>) == 1) {
    return model::Depth::Eight;
  } else if constexpr (sizeof(ComponentOf<Pixel>) == 2) {
    return model::Depth::Sixteen;
  } else {
    return model::Depth::Wide;
  }
}

// Every pixel of the buffer, whether in the box or not.
template <class Pixel, class Accum>
::testing::AssertionResult equalsModel(const HvTexture<Pixel, Accum>& texture, const model::Picture& expected) {
  for (int y = 0; y < texture.height(); ++y) {
    for (int x = 0; x < texture.width(); ++x) {
      const model::Pixel have = modelPixel(*texture.at(x, y));
      const model::Pixel want = model::Stored(expected, x, y);
      if (have == want) continue;
      auto failure = ::testing::AssertionFailure() << "pixel " << x << ", " << y << " is";
      for (const int c : have)
        failure << ' ' << c;
      failure << ", in the model";
      for (const int c : want)
        failure << ' ' << c;
      return failure;
    }
  }
  return ::testing::AssertionSuccess();
}

}  // namespace vblur::test
