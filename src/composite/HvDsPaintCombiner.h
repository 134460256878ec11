// Mixes a finished picture over its source by a mask.
#pragma once

#include <cstdint>

#include "composite/MixRows.h"
#include "composite/StraightRuns.h"
#include "image/Arithmetic.h"
#include "image/Combiner.h"
#include "image/HvCpu.h"

namespace vblur {

// Instances: <R8, Rf, C8, Cf> and <R16, Rf, C16, Cf>. process(source, mask, output), with the effect's result in the
// output. Where the mask has no pixel it counts as 0; where the source has none it counts as zero, whatever its outside
// colour. The mask's full strength is the top of its storage.
template <class Pixel, class Accum, class MaskPixel, class MaskAccum>
class HvDsPaintCombiner
    : public Combiner<HvTexture<Pixel, Accum>, HvTexture<MaskPixel, MaskAccum>, HvTexture<Pixel, Accum>> {
 public:
  using Texture = HvTexture<Pixel, Accum>;
  using Mask = HvTexture<MaskPixel, MaskAccum>;
  static constexpr std::int32_t kTop = kTopOf<MaskPixel>;

  // The result d over the source a by a mask value of m. A negative 16-bit m extrapolates away from d; the store keeps
  // the low bits.
  static Pixel shown(const Pixel& d, const Pixel& a, std::int32_t m) {
    if (m == 0) return a;
    if (m == kTop) return d;
    Pixel result{};
    result.red = storeNarrow<ComponentOf<Pixel>>(mixInt<kTop>(d.red, a.red, m));
    result.green = storeNarrow<ComponentOf<Pixel>>(mixInt<kTop>(d.green, a.green, m));
    result.blue = storeNarrow<ComponentOf<Pixel>>(mixInt<kTop>(d.blue, a.blue, m));
    result.alpha = storeNarrow<ComponentOf<Pixel>>(mixInt<kTop>(d.alpha, a.alpha, m));
    return result;
  }

  void processRows(Texture* a, Mask* mask, Texture* out) override {
    walkRuns<PollAt::BeforeRow>(
        this->rowLoop(), this->interrupt, *out,
        [](Pixel* to, std::int32_t n, const HvPixelRun<Pixel>& runA, const HvPixelRun<MaskPixel>& runM) {
          static constexpr Pixel kNothing{};
          static constexpr MaskPixel kHidden{};
          const auto row = [](const Pixel* source, const MaskPixel* strength, Pixel* result, std::int32_t count) {
            paintRow(source, strength, result, count);
          };
          const auto source = runA.exists ? runA : HvPixelRun<Pixel>{&kNothing, 0, n, false};
          const auto strength = runM.exists ? runM : HvPixelRun<MaskPixel>{&kHidden, 0, n, false};
          if (!HvUsesVectors() || !runStraight(to, n, source, strength, row)) showRun(to, n, source, strength);
        },
        *a, *mask);
  }

 private:
  static void showRun(Pixel* to, std::int32_t n, const HvPixelRun<Pixel>& runA, const HvPixelRun<MaskPixel>& runM) {
    const Pixel* source = runA.first;
    const MaskPixel* strength = runM.first;
    for (std::int32_t i = 0; i < n; ++i, source += runA.step, strength += runM.step)
      to[i] = shown(to[i], *source, strength->value);
  }
};

}  // namespace vblur
