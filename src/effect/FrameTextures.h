// The views of the host's images that one frame works on. They own no pixels.
#pragma once

#include "image/HvTexture.h"

namespace vblur {

// The one-component pixel of a mask that belongs to a frame's pixel.
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

template <class Pixel>
struct FrameTextures {
  HvTexture<Pixel, Rf> output;
  HvTexture<Pixel, Rf> source;
  HvTexture<Pixel, Rf> source2;
  HvTexture<typename MaskPixelOf<Pixel>::Type, Cf> mask;
};

}  // namespace vblur
