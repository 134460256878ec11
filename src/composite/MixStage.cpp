#include "composite/MixStage.h"

#include <array>

#include "composite/HvMerge.h"
#include "composite/MixCombiner.h"

namespace vblur {

namespace {

constexpr std::int32_t kMixBackNone = 0;
constexpr std::int32_t kMixBackMix = 1;
constexpr std::int32_t kFirstMergeValue = 2;

// In the order of the mix-back list, from its third entry on.
constexpr std::array kMergeMethods = {
    kMergeLuminance, kMergeChroma,   kMergeHue,        kMergeSaturation, kMergeValue,     kMergeColour,
    kMergeDarken,    kMergeLighten,  kMergeScreen,     kMergeMultiply,   kMergeAdd,       kMergeAddOver,
    kMergeAddUnder,  kMergeSubtract, kMergeDifference, kMergeOverlay,    kMergeHardLight,
};
constexpr std::int32_t kMixBackCount = kFirstMergeValue + static_cast<std::int32_t>(kMergeMethods.size());

template <class Stage, class Texture>
void runStage(Stage& stage, Texture& result, Texture& source, const StageWindow& window, HvInterruptRecord* interrupt) {
  stage.setWindow(window.x1, window.y1, window.x2, window.y2);
  stage.interrupt = interrupt;
  stage.process(&result, &source, &result);
}

}  // namespace

template <class Pixel>
void RunMixStage(HvTexture<Pixel, Rf>& source, HvTexture<Pixel, Rf>& result, std::int32_t method, float blend,
                 float effectGain, float sourceGain, const StageWindow& window, HvInterruptRecord* interrupt) {
  if (method <= kMixBackNone || method >= kMixBackCount) return;
  // The result is also the first input, read at its own place and without its box.
  HvTexture<Pixel, Rf> view;
  view.referTo(result);
  view.wholeBounds();
  view.setOrigin(result.horizontal.writeOrigin, result.vertical.writeOrigin);

  const float m = blend / 100.0f;
  if (method == kMixBackMix) {
    MixCombiner<Pixel, Rf, Pixel::kOne> mix;
    if constexpr (Pixel::kIntegral) {
      mix.weightA = (1.0f - m) * effectGain / 100.0f;
      mix.weightB = m * sourceGain / 100.0f;
    } else {
      // Weights without gains sum to 1 exactly.
      mix.weightA = (1.0f - m) * (effectGain / 100.0f);
      mix.weightB = m * (sourceGain / 100.0f);
    }
    return runStage(mix, view, source, window, interrupt);
  }
  HvMerge<Pixel, Rf, Pixel::kOne> merge;
  merge.rgbMode = 1;
  merge.method = kMergeMethods[static_cast<std::size_t>(method - kFirstMergeValue)];
  merge.setGains(effectGain / 100.0f, sourceGain / 100.0f);
  merge.setBlend(m);
  runStage(merge, view, source, window, interrupt);
}

template void RunMixStage<R8>(HvTexture<R8, Rf>&, HvTexture<R8, Rf>&, std::int32_t, float, float, float,
                              const StageWindow&, HvInterruptRecord*);
template void RunMixStage<R16>(HvTexture<R16, Rf>&, HvTexture<R16, Rf>&, std::int32_t, float, float, float,
                               const StageWindow&, HvInterruptRecord*);
template void RunMixStage<Rf>(HvTexture<Rf, Rf>&, HvTexture<Rf, Rf>&, std::int32_t, float, float, float,
                              const StageWindow&, HvInterruptRecord*);

}  // namespace vblur
