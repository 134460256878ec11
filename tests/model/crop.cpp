#include "crop.h"

#include "arithmetic.h"

namespace model {
namespace {

float Fraction(double percent) {
  return static_cast<float>(percent / 100.0);
}

float ColourFraction(double percent) {
  return Limit(static_cast<float>(percent) / 100.0f, 0.0f, 1.0f);
}

}  // namespace

Crop CropOf(const Properties& properties) {
  Crop crop{};
  crop.left = Fraction(properties.cropLeft);
  crop.right = Fraction(properties.cropRight);
  crop.bottom = Fraction(properties.cropBottom);
  crop.top = Fraction(properties.cropTop);
  crop.red = ColourFraction(properties.cropColourR);
  crop.green = ColourFraction(properties.cropColourG);
  crop.blue = ColourFraction(properties.cropColourB);
  crop.xEdgeMethod = properties.xEdgeMethod;
  crop.yEdgeMethod = properties.yEdgeMethod;
  return crop;
}

void ApplyCrop(Picture& picture, const Crop& crop, Depth depth) {
  const float width = static_cast<float>(picture.x.size);
  const float height = static_cast<float>(picture.y.size);
  SetBounds(picture.x, Truncate(width * crop.left), Truncate(width * crop.right));
  SetBounds(picture.y, Truncate(height * crop.bottom), Truncate(height * crop.top));
  picture.x.edge = crop.xEdgeMethod;
  picture.y.edge = crop.yEdgeMethod;
  const auto colour = [&](float fraction) { return Store(depth, fraction * One(depth)); };
  picture.outside = {colour(crop.red), colour(crop.green), colour(crop.blue), 0};
}

Rectangle CropRectangle(const Picture& picture, const Crop& crop) {
  const float width = static_cast<float>(picture.x.size);
  const float height = static_cast<float>(picture.y.size);
  const float x = static_cast<float>(picture.x.origin);
  const float y = static_cast<float>(picture.y.origin);
  return {Truncate(width * crop.left + x), Truncate(width * crop.right + x), Truncate(height * crop.bottom + y),
          Truncate(height * crop.top + y)};
}

}  // namespace model
