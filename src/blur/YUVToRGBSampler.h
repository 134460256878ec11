// The way back from luminance and colour differences. Negative values, and those above the top of the
// range, do not survive it.
#pragma once

#include "blur/ColourRows.h"
#include "image/Sampler.h"

namespace vblur {

template <class Tex1, class Tex2, class Pixel1, class Pixel2, std::int32_t Max>
class YUVToRGBSampler : public Sampler<Tex1, Tex2> {
 public:
  static Pixel2 converted(const Pixel1& pixel) { return rgbOfHeldYuv<Max, Pixel2>(pixel); }

  void processRows(Tex1* in, Tex2* out) override {
    walkRuns<PollAt::BeforeRow>(
        this->rowLoop(), this->interrupt, *out,
        [](Pixel2* to, std::int32_t n, const HvPixelRun<Pixel1>& run) { rgbRowFromYuv<Max>(to, run, n); }, *in);
  }
};

}  // namespace vblur
