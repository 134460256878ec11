// A weighted sum of two pictures.
#pragma once

#include <cstdint>

#include "composite/MixRows.h"
#include "composite/PixelMath.h"
#include "composite/RowWeights.h"
#include "composite/StraightRuns.h"
#include "image/Combiner.h"
#include "image/HvCpu.h"

namespace vblur {

// Instances: <R8, Rf, 255> and <R16, Rf, 16384>. The output may be one of the two pictures.
template <class Pixel, class Accum, std::int32_t One>
class MixCombiner : public Combiner<HvTexture<Pixel, Accum>, HvTexture<Pixel, Accum>, HvTexture<Pixel, Accum>> {
 public:
  static_assert(One == Pixel::kOne);
  using Texture = HvTexture<Pixel, Accum>;

  // Whether the weights can take a sum out of range. It is then clamped to 0..One, at 16 bits too, unlike a merge,
  // which clamps to the storage range.
  bool limitsResult() const { return weightA < 0.0f || weightB < 0.0f || weightA + weightB > 1.0f; }

  void processRows(Texture* a, Texture* b, Texture* out) override {
    const MixRowWeights weights{weightA, weightB, limitsResult()};
    const bool byVectors = HvUsesVectors() && rowWeightsFit(weightA, weightB);
    const auto row = [&](const Pixel* fromA, const Pixel* fromB, Pixel* to, std::int32_t n) {
      mixRow(fromA, fromB, to, n, weights);
    };
    walkRuns(
        this->rowLoop(), this->interrupt, *out,
        [&](Pixel* to, std::int32_t n, const Run& runA, const Run& runB) {
          if (byVectors && runStraight(to, n, runA, runB, row)) return;
          if (weights.limits) {
            mixRun(to, n, runA, runB, [](float v) { return clampTo(v, 0.0f, static_cast<float>(One)); });
          } else {
            mixRun(to, n, runA, runB, [](float v) { return v; });
          }
        },
        *a, *b);
  }

  float weightA = 1.0f;
  float weightB = 0.0f;

 private:
  using Run = HvPixelRun<Pixel>;

  // Without a limit a sum lies between its components, and the store is exact.
  template <class Limit>
  void mixRun(Pixel* to, std::int32_t n, const Run& runA, const Run& runB, Limit limit) const {
    const auto store = [limit](float v) { return storeNarrow<ComponentOf<Pixel>>(truncToInt(limit(v))); };
    const Pixel* pixelA = runA.first;
    const Pixel* pixelB = runB.first;
    for (std::int32_t i = 0; i < n; ++i, pixelA += runA.step, pixelB += runB.step) {
      const Rf sum = weightedSum(widenedToFloat(*pixelA), weightA, widenedToFloat(*pixelB), weightB);
      Pixel result{};
      result.red = store(sum.red);
      result.green = store(sum.green);
      result.blue = store(sum.blue);
      result.alpha = store(sum.alpha);
      to[i] = result;
    }
  }
};

}  // namespace vblur
