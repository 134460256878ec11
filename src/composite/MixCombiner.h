// A weighted sum of two pictures.
#pragma once

#include <cstdint>

#include "composite/MixRows.h"
#include "composite/PixelMath.h"
#include "composite/PlainRuns.h"
#include "composite/RowWeights.h"
#include "composite/StraightRuns.h"
#include "image/Combiner.h"
#include "image/HvCpu.h"

namespace vblur {

// Instances: <R8, Rf, 255>, <R16, Rf, 16384> and <Rf, Rf, 1>. The output may be one of the two pictures.
template <class Pixel, class Accum, std::int32_t One>
class MixCombiner : public Combiner<HvTexture<Pixel, Accum>, HvTexture<Pixel, Accum>, HvTexture<Pixel, Accum>> {
 public:
  static_assert(One == Pixel::kOne);
  using Texture = HvTexture<Pixel, Accum>;

  // Whether the weights can take a sum of integers out of range. It is then clamped to 0..One, at 16 bits too, unlike a
  // merge, which clamps to the storage range. Floats have no range.
  bool limitsResult() const { return weightA < 0.0f || weightB < 0.0f || weightA + weightB > 1.0f; }

  void processRows(Texture* a, Texture* b, Texture* out) override {
    walkRuns(
        this->rowLoop(), this->interrupt, *out,
        [&](Pixel* to, std::int32_t n, const Run& runA, const Run& runB) { mixRun(to, n, runA, runB); }, *a, *b);
  }

  float weightA = 1.0f;
  float weightB = 0.0f;

 private:
  using Run = HvPixelRun<Pixel>;

  void mixRun(Pixel* to, std::int32_t n, const Run& runA, const Run& runB) const {
    const MixRowWeights weights{weightA, weightB, limitsResult()};
    const auto row = [&](const Pixel* fromA, const Pixel* fromB, Pixel* result, std::int32_t count) {
      mixRow(fromA, fromB, result, count, weights);
    };
    const bool fits = !Pixel::kIntegral || rowWeightsFit(weightA, weightB);
    if (HvUsesVectors() && fits && runStraight(to, n, runA, runB, row)) return;
    if constexpr (!Pixel::kIntegral) {
      mapRuns(to, n, runA, runB,
              [a = double{weightA}, b = double{weightB}](const Pixel& p, const Pixel& q, const Pixel&) {
                return weightedInDoubles(p, q, a, b);
              });
    } else if (weights.limits) {
      mixPlainRun(to, n, runA, runB, [](float v) { return clampTo(v, 0.0f, static_cast<float>(One)); });
    } else {
      mixPlainRun(to, n, runA, runB, [](float v) { return v; });
    }
  }

  // Without a limit a sum lies between its components, and the store is exact.
  template <class Limit>
  void mixPlainRun(Pixel* to, std::int32_t n, const Run& runA, const Run& runB, Limit limit) const {
    mapComponents(to, n, runA, runB, [limit, a = weightA, b = weightB](auto p, auto q) {
      const float sum = static_cast<float>(p) * a + static_cast<float>(q) * b;
      return storeNarrow<ComponentOf<Pixel>>(truncToInt(limit(sum)));
    });
  }

  template <class Mix>
  static void mapComponents(Pixel* to, std::int32_t n, const Run& runA, const Run& runB, const Mix& mix) {
    mapRuns(to, n, runA, runB,
            [&mix](const Pixel& a, const Pixel& b, const Pixel&) { return ofComponents(a, b, mix); });
  }
};

}  // namespace vblur
