// Spreads a picture of one component over red, green, blue and alpha.
#pragma once

#include "image/Sampler.h"

namespace vblur {

template <class Tex1, class Tex2, class Grey, class Pixel, std::int32_t Max>
class GreyToRGBSampler : public Sampler<Tex1, Tex2> {
 public:
  // A grey other than 0 becomes Max in all components; what lies beyond the input keeps its grey.
  bool threshold = false;
  // Alpha is Max, beyond the input too.
  bool opaque = false;

  void processRows(Tex1* in, Tex2* out) override {
    walkRuns<PollAt::BeforeRow>(
        this->rowLoop(), this->interrupt, *out,
        [this](Pixel* to, std::int32_t n, const HvPixelRun<Grey>& run) {
          const Grey* grey = run.first;
          const bool cut = threshold && run.exists;
          for (std::int32_t i = 0; i < n; ++i, grey += run.step)
            to[i] = spread(componentOf(*grey, 0), cut);
        },
        *in);
  }

 private:
  Pixel spread(std::int32_t grey, bool cut) const {
    using Component = ComponentOf<Pixel>;
    const auto value = storeNarrow<Component>(!cut ? grey : grey != 0 ? Max : 0);
    Pixel pixel{};
    pixel.red = pixel.green = pixel.blue = value;
    pixel.alpha = opaque ? storeNarrow<Component>(Max) : value;
    return pixel;
  }
};

}  // namespace vblur
