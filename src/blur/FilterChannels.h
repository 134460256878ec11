// What the filter does with the components of one ChannelMask: its plain passes, the twins of StripPasses, and copies.
// The filter itself is compiled once for each type of pixel, whatever the mask.
#pragma once

#include <cstdint>

#include "blur/BoxConstants.h"
#include "blur/FilterChannelsFwd.h"
#include "blur/LineBlock.h"
#include "blur/PassRanges.h"
#include "blur/StripPasses.h"
#include "image/HvInteruptable.h"
#include "image/HvTexture.h"
#include "image/RowBand.h"

namespace vblur {

// The lines of one thread in one pass, rows along x or columns along y, and the boxes over them.
template <class Box>
struct PlainPass {
  HvSpan lines;
  Box box;
  std::int32_t boxes = 3;
  PassAxis axis;
  HvInterruptRecord* interrupt = nullptr;
};

template <class Pixel, class Accum>
struct FilterChannels {
  using Texture = HvTexture<Pixel, Accum>;
  using Pass = PlainPass<BoxOf<Pixel>>;

  StripChannels<Pixel> filtered;
  // Copies the components that are not filtered; null where all are.
  void (*copyOthers)(Pixel* out, const HvPixelRun<Pixel>& run, std::int32_t n) = nullptr;
  // Results beyond the columns of `out` are dropped.
  void (*filterRows)(const Pass& pass, const Texture& in, const Texture& out) = nullptr;
  void (*filterColumns)(const Pass& pass, const Texture& in, const Texture& out) = nullptr;
};

}  // namespace vblur
