// Restores channels of a finished picture from the source.
#pragma once

#include <cstdint>

#include "composite/MixRows.h"
#include "composite/PixelMath.h"
#include "composite/PlainRuns.h"
#include "composite/StraightRuns.h"
#include "image/HvCpu.h"
#include "image/HvRGBCopySampler.h"

namespace vblur {

// Instances: <R8, Rf, 255>, <R16, Rf, 32767> and <Rf, Rf, 1>. Restores the input's box and edge methods after the run.
template <class Pixel, class Accum, std::int32_t Top>
class HvDsMaskFixer : public HvRGBCopySampler<Pixel, Accum> {
 public:
  using Texture = HvTexture<Pixel, Accum>;
  static_assert(Top == kTopOf<Pixel>);

  void preProcess(Texture* in, Texture* /*out*/) override { savedAxes = *in; }

  void processRows(Texture* in, Texture* out) override {
    if (mixByAlpha == 0) return HvRGBCopySampler<Pixel, Accum>::processRows(in, out);
    if (this->channels == kAllColours) return SimpleCopySampler<Pixel, Accum>::processRows(in, out);
    if (this->channels >= 0 && this->channels < kAllColours) mixRows(*in, *out);
  }

  void postProcess(Texture* in, Texture* /*out*/) override {
    in->setBounds(savedAxes.horizontal.lo, savedAxes.horizontal.hi, savedAxes.vertical.lo, savedAxes.vertical.hi);
    in->setEdgeMethods(savedAxes.horizontal.edgeMethod, savedAxes.vertical.edgeMethod);
  }

  // Non-zero: the other colours are mixed over the source by its alpha, and nothing is written if alpha is among the
  // named channels. The effect does not use it.
  std::int32_t mixByAlpha = 0;

 private:
  static constexpr std::int32_t kAllColours = 7;

  void mixRows(const Texture& in, const Texture& out) const {
    const std::int32_t named = this->channels;
    walkRuns(
        this->rowLoop(), this->interrupt, out,
        [named](Pixel* to, std::int32_t n, const HvPixelRun<Pixel>& run) {
          const auto row = [named](const Pixel* from, const Pixel*, Pixel* over, std::int32_t count) {
            mixByAlphaRow(from, over, count, named);
          };
          if (HvUsesVectors() && runStraight(to, n, run, HvPixelRun<Pixel>{to, 1, n, true}, row)) return;
          mapRuns(to, n, run, run, [named](const Pixel& source, const Pixel&, const Pixel& result) {
            return mixedByAlpha(result, source, named);
          });
        },
        in);
  }

  HvTexIndexer savedAxes;
};

}  // namespace vblur
