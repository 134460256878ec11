// The blur stage: blurs or sharpens, then mixes the result back over the source.
#include <cstdint>
#include <iterator>

#include "blur/FuzzSampler.h"
#include "composite/MixStage.h"
#include "effect/Blur.h"

namespace vblur {
namespace {

template <class Pixel>
inline constexpr std::int32_t kFullScale = Pixel::kMax;

// The sampler's mode for a value of `Channels`, and whether it writes alpha.
struct ChannelChoice {
  std::int32_t mode;
  bool writesAlpha;
};

ChannelChoice ChoiceOf(std::int32_t channels) {
  static constexpr ChannelChoice kChoices[] = {
      {kFuzzRGB, false},    {kFuzzRGBA, true},  {kFuzzGrey, false}, {kFuzzRed, false},
      {kFuzzGreen, false},  {kFuzzBlue, false}, {kFuzzAlpha, true}, {kFuzzLuminance, false},
      {kFuzzChroma, false}, {kFuzzU, false},    {kFuzzV, false},
  };
  const bool listed = channels >= 0 && channels < static_cast<std::int32_t>(std::size(kChoices));
  return listed ? kChoices[channels] : ChannelChoice{kFuzzRGBA, true};
}

}  // namespace

template <class Pixel>
HRESULT Blur::RunBlurStage(double time, HvTexture<Pixel, Rf>& destination, HvTexture<Pixel, Rf>& source) {
  const BlurSizeParts parts = SizeParts(time);
  const BlurSize radius = FilterRadius(parts);
  const ChannelChoice choice = ChoiceOf(blur_.channels);
  if (!choice.writesAlpha) frame.alphaAffected = 0;

  FuzzSampler<Pixel, Ri, kFullScale<Pixel>> sampler;
  sampler.method = blur_.method;
  sampler.mode = choice.mode;
  sampler.sizeX = radius.x;
  sampler.sizeY = radius.y;
  sampler.interrupt = &frame.interrupt;
  if (const auto region = frame.RegionWindow()) region->giveTo(sampler);

  HvTexture<Pixel, Ri> sourceView;
  HvTexture<Pixel, Ri> destinationView;
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

}  // namespace vblur
