// Crop: sets the box, the edge methods and the outside colour of a texture. No pixel is copied; readers of the texture
// see the cropped picture, extended over the whole plane.
#pragma once

#include <cstdint>

#include "image/Arithmetic.h"
#include "image/HvTexture.h"
#include "image/Pixels.h"

namespace vblur {

enum CropMode : std::int32_t {
  kCropNone = 0,
  kCropBox = 1,          // box only
  kCropBoxAndEdges = 2,  // box, edge methods and outside colour
};

struct CropSettings {
  std::int32_t mode = kCropNone;
  // Fractions of the picture from its left and its bottom, neither clamped nor ordered.
  float left = 0.0f;
  float right = 1.0f;
  float bottom = 0.0f;
  float top = 1.0f;
  std::int32_t xEdgeMethod = kEdgeColour;  // an HvEdgeMethod
  std::int32_t yEdgeMethod = kEdgeColour;
  Rf colour{};  // components in 0..1
};

// Both ends of the box are inclusive: a right end of 0.5 on 100 columns includes column 50. A pair in the wrong order
// is swapped, and a fraction beyond the picture is its last pixel.
template <class Pixel>
void ApplyCropToTexture(HvTexture<Pixel, Rf>& texture, const CropSettings& crop) {
  if (crop.mode == kCropNone) return;
  const auto width = static_cast<float>(texture.width());
  const auto height = static_cast<float>(texture.height());
  texture.setBounds(truncToInt(width * crop.left), truncToInt(width * crop.right), truncToInt(height * crop.bottom),
                    truncToInt(height * crop.top));
  if (crop.mode == kCropBox) return;
  texture.setEdgeMethods(crop.xEdgeMethod, crop.yEdgeMethod);
  Pixel colour{};
  for (int c = 0; c < Pixel::kComponents; ++c)
    colour[c] = colourFromFloat<Pixel>(crop.colour[c]);
  texture.setOutsideColour(colour);
}

}  // namespace vblur
