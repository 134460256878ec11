// Mixes the filter's result over its source by one of seventeen blend methods, with a blend and a gain on
// either picture.
#pragma once

#include <cstdint>

#include "composite/HvHSVConverter.h"
#include "composite/HvRGBMerge.h"
#include "composite/MergeKernel.h"
#include "image/Combiner.h"

namespace vblur {

// The operation of a merge. The output is not written for a number that is not listed.
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

// Instances: <R8, Rf, 255>, <R16, Rf, 16384> and <Rf, Rf, 1>. Set rgbMode to 1, a method, gains and then a blend, a
// window and an interrupt record, and call process(a, b, output); the output may be one of the two.
template <class Pixel, class Accum, std::int32_t One>
class HvMerge : public Combiner<HvTexture<Pixel, Accum>, HvTexture<Pixel, Accum>, HvTexture<Pixel, Accum>>,
                public HvRGBMerge<Pixel, Accum, One>,
                public HvHSVConverter<Pixel, Accum, One> {
 public:
  using Texture = HvTexture<Pixel, Accum>;

  enum MergeFlag : std::uint32_t {
    kGained = 1,    // a gain is in force
    kTowardsB = 2,  // the blend lies above one half
    kTowardsA = 4,  // the blend lies below one half
  };

  // Gains of 1 within 1/255 are not in force; those of floats are in force unless they are 1.
  void setGains(float a, float b);
  // 0 gives the first picture, 1 the second and 0.5, of integers within 1/255, the method's full result. Call it after
  // setGains: mixA and mixB are computed from the gains.
  void setBlend(float m);
  // Floats have no integer form: it is the gained form with gains of 1.
  MergeForm form() const;

  void processRows(Texture* a, Texture* b, Texture* out) override;

  std::int32_t rgbMode = 0;               // 1: `method` is in force; the output is not written for any other mode
  std::int32_t hsvMethod = 0;             // of mode 0, which has no methods
  std::int32_t method = kMergeLuminance;  // an HvMergeMethod
  float gainA = 1.0f;
  float gainB = 1.0f;
  float mixA = 0.0f;  // gain times weight
  float mixB = 0.0f;
  float blend = 0.5f;
  float weightA = 1.0f;  // the share of either picture in the mix
  float weightB = 1.0f;
  // MergeFlags. Those of the window and of threads are in Imager::flags, which this hides: kOneThread here would be
  // kTowardsA.
  std::uint32_t flags = 0;
};

extern template class HvMerge<R8, Rf, 255>;
extern template class HvMerge<R16, Rf, 16384>;
extern template class HvMerge<Rf, Rf, 1>;

}  // namespace vblur
