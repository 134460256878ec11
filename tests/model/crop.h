// Crop: sets the box, the edge methods and the outside colour of the picture that is read; copies no pixels.
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

/// Ends in the wrong order are swapped, ends beyond the picture clamped to it.
void ApplyCrop(Picture& picture, const Crop& crop, Depth depth);

/// The crop in image coordinates, for blanking: neither ordered nor clamped.
Rectangle CropRectangle(const Picture& picture, const Crop& crop);

}  // namespace model
