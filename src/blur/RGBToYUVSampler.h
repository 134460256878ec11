// Converts colours to stored YUV (ColourConversion.h); alpha stays.
#pragma once

#include <atomic>

#include "blur/ColourRows.h"
#include "image/Sampler.h"

namespace vblur {

template <class Tex1, class Tex2, class Pixel, class Accum, std::int32_t Max>
class RGBToYUVSampler : public Sampler<Tex1, Tex2> {
 public:
  using YuvPixel = typename Tex2::Pixel;

  static YuvPixel converted(const Pixel& pixel) { return narrowed<YuvPixel>(heldYuvOf<Max>(pixel)); }

  void preProcess(Tex1* /*in*/, Tex2* /*out*/) override { allFit_.store(true, std::memory_order_relaxed); }

  // The output's outside colour is the input's, converted.
  void prePass(Tex1* in, Tex2* out) override {
    out->setOutsideColour(converted(in->outsideColour));
    if (!fits<YuvPixel>(heldYuvOf<Max>(in->outsideColour))) allFit_.store(false, std::memory_order_relaxed);
  }

  void processRows(Tex1* in, Tex2* out) override {
    walkRuns<PollAt::BeforeRow>(
        this->rowLoop(), this->interrupt, *out,
        [this](YuvPixel* to, std::int32_t n, const HvPixelRun<Pixel>& run) {
          if (!yuvRowFromRgb<Max>(to, run, n)) allFit_.store(false, std::memory_order_relaxed);
        },
        *in);
  }

  // False when a value of the last run did not fit its component.
  bool allFit() const { return allFit_.load(std::memory_order_relaxed); }

 private:
  std::atomic<bool> allFit_{true};
};

}  // namespace vblur
