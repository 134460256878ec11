// Views of the host's images for one frame. They own no pixels.
#pragma once

#include "image/HvTexture.h"

namespace vblur {

// The mask's pixel type for a frame's pixel type.
template <class Pixel>
struct MaskPixelOf;
template <>
struct MaskPixelOf<R8> {
  using Type = C8;
};
template <>
struct MaskPixelOf<R16> {
  using Type = C16;
};
template <>
struct MaskPixelOf<Rf> {
  using Type = Cf;
};

template <class Pixel>
struct FrameTextures {
  HvTexture<Pixel, Rf> output;
  HvTexture<Pixel, Rf> source;
  HvTexture<Pixel, Rf> source2;
  HvTexture<typename MaskPixelOf<Pixel>::Type, Cf> mask;
};

}  // namespace vblur
