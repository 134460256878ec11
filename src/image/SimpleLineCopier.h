// Copies one run of a row, reading through the input's edge methods.
#pragma once

#include <algorithm>
#include <cstdint>

#include "image/CopyPixels.h"
#include "image/HvTexture.h"

namespace vblur {

template <class Pixel, class Accum>
class SimpleLineCopier {
 public:
  // Copies from image coordinate x of row y on, at most to xEnd, and advances destination. Returns the number
  // of pixels copied.
  static std::int32_t copyRun(Pixel*& destination, const HvTexture<Pixel, Accum>& in, std::int32_t x, std::int32_t y,
                              std::int32_t xEnd) {
    const HvPixelRun<Pixel> run = in.readRun(x, y);
    const std::int32_t n = std::min(run.length, xEnd - x);
    copyPixels(destination, run, n);
    destination += n;
    return n;
  }
};

}  // namespace vblur
