// The mix-back stage: mixes the filter's result over its source.
#pragma once

#include <cstdint>

#include "composite/StageWindow.h"
#include "image/HvInteruptable.h"
#include "image/HvTexture.h"

namespace vblur {

// Works in place on the result, within the window; the source is read through its box and edge methods.
// The method is the stored value of the mix-back list; 0 and values beyond the list leave the result unchanged. Blend
// is in 0..100, gains are in percent and may be negative. Alpha is not premultiplied: each method has its own rule for
// it.
template <class Pixel>
void RunMixStage(HvTexture<Pixel, Rf>& source, HvTexture<Pixel, Rf>& result, std::int32_t method, float blend,
                 float effectGain, float sourceGain, const StageWindow& window, HvInterruptRecord* interrupt);

extern template void RunMixStage<R8>(HvTexture<R8, Rf>&, HvTexture<R8, Rf>&, std::int32_t, float, float, float,
                                     const StageWindow&, HvInterruptRecord*);
extern template void RunMixStage<R16>(HvTexture<R16, Rf>&, HvTexture<R16, Rf>&, std::int32_t, float, float, float,
                                      const StageWindow&, HvInterruptRecord*);
extern template void RunMixStage<Rf>(HvTexture<Rf, Rf>&, HvTexture<Rf, Rf>&, std::int32_t, float, float, float,
                                     const StageWindow&, HvInterruptRecord*);

}  // namespace vblur
