// The blur stage: blurs or sharpens, then mixes the result back over the source.
#include <cstdint>
#include <type_traits>

#include "blur/FuzzChannels.h"
#include "blur/FuzzSampler.h"
#include "composite/MixStage.h"
#include "effect/Blur.h"

namespace vblur {
namespace {

// What the filter of a pixel type sums in, and what it takes for full scale.
template <class Pixel>
using FilterAccum = std::conditional_t<Pixel::kIntegral, Ri, Rf>;
template <class Pixel>
inline constexpr std::int32_t kFullScale = Pixel::kMax;

}  // namespace

template <class Pixel>
HRESULT Blur::RunBlurStage(double time, HvTexture<Pixel, Rf>& destination, HvTexture<Pixel, Rf>& source) {
  const BlurSizeParts parts = SizeParts(time);
  const BlurSize radius = FilterRadius(parts);
  const FuzzMode mode = fuzzModeOf(blur_.channels);
  if (mode != kFuzzRGBA && mode != kFuzzAlpha) frame.alphaAffected = 0;

  FuzzSampler<Pixel, FilterAccum<Pixel>, kFullScale<Pixel>> sampler;
  sampler.method = blur_.method;
  sampler.mode = mode;
  sampler.sizeX = radius.x;
  sampler.sizeY = radius.y;
  sampler.interrupt = &frame.interrupt;
  if (const auto region = frame.RegionWindow()) region->giveTo(sampler);

  HvTexture<Pixel, FilterAccum<Pixel>> sourceView;
  HvTexture<Pixel, FilterAccum<Pixel>> destinationView;
  sourceView.share(source);
  destinationView.share(destination);
  sampler.process(&sourceView, &destinationView);

  if (frame.PollInterrupt() == 0 && effectKind != kKindTransition) {
    RunMixStage(source, destination, blur_.mixBack, static_cast<float>(parts.blend),
                static_cast<float>(parts.effectGain), static_cast<float>(parts.sourceGain), frame.ScaledWindow(),
                &frame.interrupt);
  }
  return kOk;
}

template HRESULT Blur::RunBlurStage(double, HvTexture<R8, Rf>&, HvTexture<R8, Rf>&);
template HRESULT Blur::RunBlurStage(double, HvTexture<R16, Rf>&, HvTexture<R16, Rf>&);
template HRESULT Blur::RunBlurStage(double, HvTexture<Rf, Rf>&, HvTexture<Rf, Rf>&);

}  // namespace vblur
