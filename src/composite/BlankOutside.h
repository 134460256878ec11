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

// Makes all of the output black and transparent but the crop's rectangle on the source, within the window
// (none: the whole output). Unlike the box that the source is read through, the rectangle lacks its last
// column and row, its pairs are not put in order, and the first and the last row of the window are
// cleared by every crop, even by one of the whole picture.
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
