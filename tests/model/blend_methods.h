// The operations of the blend methods, each on a first pixel p and a second pixel q of one depth.
// The integer form works on stored pixels, the float form on pixels after gains and mixing; both give a finished pixel,
// clamped to the format and truncated. Pixels of floats have the float form alone, and their results are stored as they
// are.
#pragma once

#include <array>

#include "depth.h"
#include "picture.h"

namespace model::blend {

using FloatPixel = std::array<float, 4>;

Pixel Luminance(Depth depth, const Pixel& p, const Pixel& q);
Pixel Luminance(Depth depth, const FloatPixel& p, const FloatPixel& q);
Pixel Chroma(Depth depth, const Pixel& p, const Pixel& q);
Pixel Chroma(Depth depth, const FloatPixel& p, const FloatPixel& q);

Pixel Hue(Depth depth, const Pixel& p, const Pixel& q);
Pixel Hue(Depth depth, const FloatPixel& p, const FloatPixel& q);
Pixel Saturation(Depth depth, const Pixel& p, const Pixel& q);
Pixel Saturation(Depth depth, const FloatPixel& p, const FloatPixel& q);
Pixel Value(Depth depth, const Pixel& p, const Pixel& q);
Pixel Value(Depth depth, const FloatPixel& p, const FloatPixel& q);
Pixel Colour(Depth depth, const Pixel& p, const Pixel& q);
Pixel Colour(Depth depth, const FloatPixel& p, const FloatPixel& q);

/// A tie gives q. Alpha is 0.
Pixel Darken(Depth depth, const Pixel& p, const Pixel& q);
Pixel Darken(Depth depth, const FloatPixel& p, const FloatPixel& q);
/// A tie gives q. Alpha is that of the chosen pixel.
Pixel Lighten(Depth depth, const Pixel& p, const Pixel& q);
Pixel Lighten(Depth depth, const FloatPixel& p, const FloatPixel& q);

Pixel Screen(Depth depth, const Pixel& p, const Pixel& q);
Pixel Screen(Depth depth, const FloatPixel& p, const FloatPixel& q);
Pixel Multiply(Depth depth, const Pixel& p, const Pixel& q);
Pixel Multiply(Depth depth, const FloatPixel& p, const FloatPixel& q);
Pixel Add(Depth depth, const Pixel& p, const Pixel& q);
Pixel Add(Depth depth, const FloatPixel& p, const FloatPixel& q);
Pixel AddOver(Depth depth, const Pixel& p, const Pixel& q);
Pixel AddOver(Depth depth, const FloatPixel& p, const FloatPixel& q);
Pixel AddUnder(Depth depth, const Pixel& p, const Pixel& q);
Pixel AddUnder(Depth depth, const FloatPixel& p, const FloatPixel& q);
Pixel Subtract(Depth depth, const Pixel& p, const Pixel& q);
Pixel Subtract(Depth depth, const FloatPixel& p, const FloatPixel& q);
Pixel Difference(Depth depth, const Pixel& p, const Pixel& q);
Pixel Difference(Depth depth, const FloatPixel& p, const FloatPixel& q);

/// HardLight with the two pixels exchanged.
Pixel Overlay(Depth depth, const Pixel& p, const Pixel& q);
Pixel Overlay(Depth depth, const FloatPixel& p, const FloatPixel& q);
/// Screens where the colours of p sum to more than three times 1.0, else multiplies; the same for all four components.
Pixel HardLight(Depth depth, const Pixel& p, const Pixel& q);
Pixel HardLight(Depth depth, const FloatPixel& p, const FloatPixel& q);

}  // namespace model::blend
