// Copies the flagged channels of the window and keeps the target's others: for channels that are not
// filtered.
#pragma once

#include "image/ChannelMask.h"
#include "image/Sampler.h"

namespace vblur {

template <class Pixel, class Accum, int R, int G, int B, int A>
class ChannelCopySampler : public Sampler<HvTexture<Pixel, Accum>, HvTexture<Pixel, Accum>> {
 public:
  using Texture = HvTexture<Pixel, Accum>;

  void processRows(Texture* in, Texture* out) override {
    walkRuns(
        this->rowLoop(), this->interrupt, *out,
        [](Pixel* to, std::int32_t n, const HvPixelRun<Pixel>& run) {
          copyChannels<ChannelMask<R, G, B, A>>(to, run, n);
        },
        *in);
  }
};

}  // namespace vblur
