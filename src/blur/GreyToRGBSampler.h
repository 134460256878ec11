// Spreads a picture of one component over red, green, blue and alpha.
#pragma once

#include "blur/ChannelRows.h"
#include "image/Sampler.h"

namespace vblur {

template <class Tex1, class Tex2, class Grey, class Pixel, std::int32_t Max>
class GreyToRGBSampler : public Sampler<Tex1, Tex2> {
 public:
  // A grey other than 0 becomes Max in all components; not beyond the input.
  bool threshold = false;
  // Alpha is Max, beyond the input too.
  bool opaque = false;

  void processRows(Tex1* in, Tex2* out) override {
    walkRuns(
        this->rowLoop(), this->interrupt, *out,
        [this](Pixel* to, std::int32_t n, const HvPixelRun<Grey>& run) {
          spreadRow<Max>(to, run, Spread{threshold && run.exists, opaque}, n);
        },
        *in);
  }
};

}  // namespace vblur
