// Mixes the filter's result over its source by one of seventeen blend methods, with a blend and a gain on
// either picture.
#pragma once

#include <cstdint>

#include "composite/MergeKernel.h"
#include "image/Combiner.h"

namespace vblur {

// What to do with the two pictures. Numbers between HardLight and Add Over are not in use and leave the
// output alone.
enum HvMergeMethod : std::int32_t {
  kMergeLuminance = 0,
  kMergeChroma = 1,
  kMergeHue = 2,
  kMergeSaturation = 3,
  kMergeValue = 4,
  kMergeColour = 5,
  kMergeDarken = 6,
  kMergeLighten = 7,
  kMergeScreen = 8,
  kMergeMultiply = 9,
  kMergeAdd = 10,
  kMergeSubtract = 11,
  kMergeDifference = 12,
  kMergeOverlay = 13,
  kMergeHardLight = 14,
  kMergeAddOver = 19,
  kMergeAddUnder = 20,
};

// Instances: <R8, Rf, 255> and <R16, Rf, 16384>. Give it a method, gains and then a blend, a window and an
// interrupt record, and call process(a, b, output); the output may be one of the two.
template <class Pixel, class Accum, std::int32_t One>
class HvMerge : public Combiner<HvTexture<Pixel, Accum>, HvTexture<Pixel, Accum>, HvTexture<Pixel, Accum>> {
 public:
  static_assert(One == Pixel::kOne);
  using Texture = HvTexture<Pixel, Accum>;

  enum MergeFlag : std::uint32_t {
    kGained = 1,    // a gain is in force
    kTowardsB = 2,  // the blend lies above one half
    kTowardsA = 4,  // the blend lies below one half
  };

  // Gains of 1 within 1/255 are not in force.
  void setGains(float a, float b);
  // 0 gives the first picture, 1 the second and 0.5, within 1/255, the method's full result. Takes the
  // gains as they stand.
  void setBlend(float m);
  MergeForm form() const;

  void processRows(Texture* a, Texture* b, Texture* out) override;

  std::int32_t method = kMergeLuminance;  // an HvMergeMethod
  MergeWeights weights;
  float blend = 0.5f;
  std::uint32_t mergeFlags = 0;
};

extern template class HvMerge<R8, Rf, 255>;
extern template class HvMerge<R16, Rf, 16384>;

}  // namespace vblur
