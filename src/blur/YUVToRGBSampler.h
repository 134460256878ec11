// Converts stored YUV back to colours, limited to 0..Max.
#pragma once

#include "blur/ColourRows.h"
#include "image/Sampler.h"

namespace vblur {

template <class Tex1, class Tex2, class Pixel1, class Pixel2, std::int32_t Max>
class YUVToRGBSampler : public Sampler<Tex1, Tex2> {
 public:
  void processRows(Tex1* in, Tex2* out) override {
    walkRuns<PollAt::BeforeRow>(
        this->rowLoop(), this->interrupt, *out,
        [](Pixel2* to, std::int32_t n, const HvPixelRun<Pixel1>& run) { rgbRowFromYuv<Max>(to, run, n); }, *in);
  }
};

}  // namespace vblur
