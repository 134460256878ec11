// Clears what lies outside the crop in a finished picture.
#pragma once

#include <cstdint>
#include <optional>

#include "composite/ApplyCrop.h"
#include "composite/StageWindow.h"
#include "image/Arithmetic.h"
#include "image/HvImgFiller.h"
#include "image/HvTexture.h"

namespace vblur {

// Clears the window (none: the whole output) to transparent black, except the crop's rectangle. Unlike the crop's box,
// the rectangle excludes its last column and row, and its ends are not sorted. The first and the last row of the window
// are always cleared, even by a crop to the whole picture.
template <class Pixel>
void BlankOutside(HvTexture<Pixel, Rf>& output, const HvTexIndexer& source, const CropSettings& crop,
                  const std::optional<StageWindow>& window, HvInterruptRecord* interrupt) {
  const auto place = [](const HvTexAxis& axis, float fraction) {
    return truncToInt(static_cast<float>(axis.size) * fraction + static_cast<float>(axis.originI));
  };
  HvImgFiller<Pixel, Rf> filler;
  filler.fillOutside = true;
  filler.left = place(source.horizontal, crop.left);
  filler.right = place(source.horizontal, crop.right);
  filler.bottom = place(source.vertical, crop.bottom);
  filler.top = place(source.vertical, crop.top);
  filler.interrupt = interrupt;
  if (window) filler.setWindow(window->x1, window->y1, window->x2, window->y2);
  filler.process(&output);
}

}  // namespace vblur
