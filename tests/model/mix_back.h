// Mixing the filter's result back onto the source, and the plain mix of two pictures.
#pragma once

#include "blend_methods.h"
#include "depth.h"
#include "picture.h"
#include "window.h"

namespace model {

enum MixMethod : int { kMixNone = 0, kMixPlain = 1, kMixFirst = 2, kMixLast = 18 };

/// In percent: blend in 0..100, gains unlimited.
struct MixSettings {
  Depth depth = Depth::Eight;
  int method = kMixNone;  ///< 0 None, 1 Mix, 2 Luminance, ... 18 HardLight
  float blend = 50.0f;
  float effectGain = 100.0f;
  float sourceGain = 100.0f;
};

/// One pixel of method 1: a weighted sum, clamped to 0..one only if the weights could leave the range. Floats are not
/// clamped.
Pixel MixPlain(const MixSettings& settings, const Pixel& effect, const Pixel& source);

/// Which of the four forms a method takes.
enum class MixForm {
  TowardSource,  ///< the blend lies above one half
  TowardEffect,  ///< the blend lies below one half
  Gained,        ///< at one half, with gains
  Whole,         ///< at one half, without gains: integers. Not of floats
};

MixForm FormOf(const MixSettings& settings);

/// One pixel of the methods from 2 to 18.
Pixel MixByMethod(const MixSettings& settings, const Pixel& effect, const Pixel& source);

/// The mix-back stage, in place. The result is read and written at its write origin.
void MixBack(const MixSettings& settings, const Picture& source, Picture& result, const Window& window);

/// Mixes `first` into the target by an amount of 0..1; without `second` the target itself is the other
/// picture.
void MixPictures(Depth depth, float amount, const Picture& first, const Picture* second, Picture& target,
                 const Window& window);

}  // namespace model
