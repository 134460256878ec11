// Crop: not a stage that moves pixels, but a box, edge methods and a colour on the picture that is read.
#pragma once

#include "copy.h"
#include "depth.h"
#include "picture.h"
#include "properties.h"

namespace model {

/// The crop as fractions of a picture and a colour in 0..1.
struct Crop {
  float left, right, bottom, top;
  float red, green, blue;
  int xEdgeMethod, yEdgeMethod;
};

Crop CropOf(const Properties& properties);

/// Ends in the wrong order swap, ends beyond the picture come back to it.
void ApplyCrop(Picture& picture, const Crop& crop, Depth depth);

/// The crop in image coordinates, for blanking: neither ordered nor limited.
Rectangle CropRectangle(const Picture& picture, const Crop& crop);

}  // namespace model
