// Mixes a finished picture over its source by a mask.
#pragma once

#include <cstdint>

#include "composite/MixRows.h"
#include "composite/PixelMath.h"
#include "composite/PlainRuns.h"
#include "composite/StraightRuns.h"
#include "image/Arithmetic.h"
#include "image/Combiner.h"
#include "image/HvCpu.h"

namespace vblur {

// Instances: <R8, Rf, C8, Cf>, <R16, Rf, C16, Cf> and <Rf, Rf, Cf, Cf>. process(source, mask, output), with the
// effect's result in the output. Where the mask has no pixel it counts as 0; where the source has none it counts as
// zero, whatever its outside colour. The mask's full strength is the top of its storage, 1 in floats.
template <class Pixel, class Accum, class MaskPixel, class MaskAccum>
class HvDsPaintCombiner
    : public Combiner<HvTexture<Pixel, Accum>, HvTexture<MaskPixel, MaskAccum>, HvTexture<Pixel, Accum>> {
 public:
  using Texture = HvTexture<Pixel, Accum>;
  using Mask = HvTexture<MaskPixel, MaskAccum>;
  static_assert(kTopOf<MaskPixel> == kTopOf<Pixel>);

  // The result d over the source a by a mask value of m. A negative 16-bit m extrapolates away from d; the store keeps
  // the low bits. A float m is limited to 0..1.
  static Pixel shown(const Pixel& d, const Pixel& a, AmountOf<MaskPixel> m) {
    if constexpr (MaskPixel::kIntegral) {
      if (m == 0) return a;
      if (m == kTopOf<MaskPixel>) return d;
    }
    return mixPixels(d, a, m);
  }

  void processRows(Texture* a, Mask* mask, Texture* out) override {
    walkRuns<PollAt::BeforeRow>(
        this->rowLoop(), this->interrupt, *out,
        [](Pixel* to, std::int32_t n, const HvPixelRun<Pixel>& runA, const HvPixelRun<MaskPixel>& runM) {
          static constexpr Pixel kNothing{};
          static constexpr MaskPixel kHidden{};
          const auto source = runA.exists ? runA : HvPixelRun<Pixel>{&kNothing, 0, n, false};
          const auto strength = runM.exists ? runM : HvPixelRun<MaskPixel>{&kHidden, 0, n, false};
          const auto row = [](const Pixel* from, const MaskPixel* values, Pixel* result, std::int32_t count) {
            paintRow(from, values, result, count);
          };
          if (HvUsesVectors() && runStraight(to, n, source, strength, row)) return;
          mapRuns(to, n, source, strength, [](const Pixel& from, const MaskPixel& value, const Pixel& result) {
            return shown(result, from, value.value);
          });
        },
        *a, *mask);
  }
};

}  // namespace vblur
