// Extracts one component of a picture.
#pragma once

#include "blur/ChannelRows.h"
#include "image/Sampler.h"

namespace vblur {

template <class Tex1, class Tex2, class Pixel, class T, int Channel>
class ChannelExtractor : public Sampler<Tex1, Tex2> {
 public:
  void processRows(Tex1* in, Tex2* out) override {
    walkRuns(
        this->rowLoop(), this->interrupt, *out,
        [](T* to, std::int32_t n, const HvPixelRun<Pixel>& run) { extractRow<Channel>(to, run, n); }, *in);
  }
};

}  // namespace vblur
