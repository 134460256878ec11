// Runs the filter for tests that take long to compile, so that a change in GaussFilter.h does not compile them again.
#pragma once

#include <cstdint>

#include "image/ChannelMask.h"
#include "image/Sampler.h"

namespace vblur::test {

struct FilterFields {
  float sizeX = 0.0f;
  float sizeY = 0.0f;
  std::int32_t boxes = 3;
  bool keepsOthers = false;
  bool keepsIntermediate = true;
};

// With the window, interrupt record, aspect and field of `as`. FilterRuns.cpp lists the instances.
template <class Mask, class Pixel, class Accum>
void runFilter(const Imager& as, const FilterFields& fields, HvTexture<Pixel, Accum>* in, HvTexture<Pixel, Accum>* out);

}  // namespace vblur::test
