// A picture as luminance and colour differences, each held as ColourConversion.h tells, alpha as it
// stands.
#pragma once

#include "blur/ColourConversion.h"
#include "image/Sampler.h"

namespace vblur {

template <class Tex1, class Tex2, class Pixel, class Accum, std::int32_t Max>
class RGBToYUVSampler : public Sampler<Tex1, Tex2> {
 public:
  static Ri converted(const Pixel& pixel) {
    const YuvInt c = yuvFromRgb(std::int32_t{pixel.red}, std::int32_t{pixel.green}, std::int32_t{pixel.blue});
    Ri result{};
    result.red = heldYuv<Max>(c.y);
    result.green = heldYuv<Max>(c.u);
    result.blue = heldYuv<Max>(c.v);
    result.alpha = pixel.alpha;
    return result;
  }

  // What lies beyond the input lies, converted, beyond the output.
  void prePass(Tex1* in, Tex2* out) override { out->setOutsideColour(converted(in->outsideColour)); }

  void processRows(Tex1* in, Tex2* out) override {
    walkRuns<PollAt::BeforeRow>(
        this->rowLoop(), this->interrupt, *out,
        [](Ri* to, std::int32_t n, const HvPixelRun<Pixel>& run) {
          const Pixel* pixel = run.first;
          for (std::int32_t i = 0; i < n; ++i, pixel += run.step)
            to[i] = converted(*pixel);
        },
        *in);
  }
};

}  // namespace vblur
