// A mix of two pictures by one amount, for transitions.
#pragma once

#include <cstdint>

#include "composite/MixRows.h"
#include "composite/PixelMath.h"
#include "composite/PlainRuns.h"
#include "composite/StraightRuns.h"
#include "image/Arithmetic.h"
#include "image/HvCpu.h"
#include "image/HvImgProc3.h"
#include "image/HvTexture.h"
#include "image/RowWalk.h"

namespace vblur {

// Instances: <R8, Rf, 255>, <R16, Rf, 32767> and <Rf, Rf, 1>. run(a, b, target) writes a * amount + b * (1 - amount).
// If b is null, the target is the second picture, mixed in place.
template <class Pixel, class Accum, std::int32_t Max>
class HvQuickMixer : public HvImgProc3<HvTexture<Pixel, Accum>, HvTexture<Pixel, Accum>, HvTexture<Pixel, Accum>> {
 public:
  static_assert(Max == kTopOf<Pixel>);

  void processRows() override {
    const HvRowLoop loop = this->rowLoop();
    const Amount t = amountOf<Pixel>(amount);
    if (this->imageB == nullptr) {
      walkRuns<PollAt::BeforeRow>(
          loop, this->interrupt, *this->target,
          [t](Pixel* to, std::int32_t n, const HvPixelRun<Pixel>& runA) {
            mixRun(to, n, runA, {to, 1, n, true}, t);
          },
          *this->imageA);
    } else {
      walkRuns<PollAt::BeforeRow>(
          loop, this->interrupt, *this->target,
          [t](Pixel* to, std::int32_t n, const HvPixelRun<Pixel>& runA, const HvPixelRun<Pixel>& runB) {
            mixRun(to, n, runA, runB, t);
          },
          *this->imageA, *this->imageB);
    }
  }

  float amount = 0.0f;  // 0 to 1

 private:
  using Amount = AmountOf<Pixel>;

  static void mixRun(Pixel* to, std::int32_t n, const HvPixelRun<Pixel>& runA, const HvPixelRun<Pixel>& runB,
                     Amount t) {
    const auto row = [t](const Pixel* a, const Pixel* b, Pixel* out, std::int32_t count) {
      quickMixRow(a, b, out, count, t);
    };
    if (HvUsesVectors() && runStraight(to, n, runA, runB, row)) return;
    mixPlainRun(to, n, runA, runB, t);
  }

  // A mix lies between its two components: the store is exact.
  static void mixPlainRun(Pixel* to, std::int32_t n, const HvPixelRun<Pixel>& runA, const HvPixelRun<Pixel>& runB,
                          Amount t) {
    mapRuns(to, n, runA, runB, [t](const Pixel& a, const Pixel& b, const Pixel&) { return mixPixels(a, b, t); });
  }
};

}  // namespace vblur
