// The way back from luminance and colour differences. Negative values, and those above the top of the
// range, do not survive it.
#pragma once

#include "blur/ColourConversion.h"
#include "image/Sampler.h"

namespace vblur {

template <class Tex1, class Tex2, class Pixel1, class Pixel2, std::int32_t Max>
class YUVToRGBSampler : public Sampler<Tex1, Tex2> {
 public:
  static Pixel2 converted(const Pixel1& pixel) {
    const YuvFloat c{static_cast<float>(yuvFromHeld<Max>(pixel.red)), static_cast<float>(yuvFromHeld<Max>(pixel.green)),
                     static_cast<float>(yuvFromHeld<Max>(pixel.blue))};
    Pixel2 result{};
    rgbFromYuv(result, c, 0.0f, static_cast<float>(Max));
    result.alpha = storeNarrow<ComponentOf<Pixel2>>(pixel.alpha);
    return result;
  }

  void processRows(Tex1* in, Tex2* out) override {
    walkRuns<PollAt::BeforeRow>(
        this->rowLoop(), this->interrupt, *out,
        [](Pixel2* to, std::int32_t n, const HvPixelRun<Pixel1>& run) {
          const Pixel1* pixel = run.first;
          for (std::int32_t i = 0; i < n; ++i, pixel += run.step)
            to[i] = converted(*pixel);
        },
        *in);
  }
};

}  // namespace vblur
