// The parts of the blur of single channels of floats: luminance and colour differences of a picture, a change of them
// carried back into its colours, and red spread over all colours.
#pragma once

#include "blur/ColourRows.h"
#include "image/Combiner.h"
#include "image/HvImgProc1.h"
#include "image/Sampler.h"

namespace vblur {

using RfTexture = HvTexture<Rf, Rf>;

// The output's outside colour is the input's, converted.
class RfToYUVSampler : public Sampler<RfTexture, RfTexture> {
 public:
  void prePass(RfTexture* in, RfTexture* out) override { out->setOutsideColour(yuvOf(in->outsideColour)); }

  void processRows(RfTexture* in, RfTexture* out) override {
    walkRuns<PollAt::BeforeRow>(
        this->rowLoop(), this->interrupt, *out,
        [](Rf* to, std::int32_t n, const HvPixelRun<Rf>& run) {
          const Rf* pixel = run.first;
          for (std::int32_t i = 0; i < n; ++i, pixel += run.step)
            to[i] = yuvOf(*pixel);
        },
        *in);
  }
};

// process(picture, yuv, output): the picture with the luminance and colour differences of `yuv`, and its own alpha.
class YUVChangeCombiner : public Combiner<RfTexture, RfTexture, RfTexture> {
 public:
  void processRows(RfTexture* picture, RfTexture* yuv, RfTexture* out) override {
    walkRuns<PollAt::BeforeRow>(
        this->rowLoop(), this->interrupt, *out,
        [](Rf* to, std::int32_t n, const HvPixelRun<Rf>& pictureRun, const HvPixelRun<Rf>& yuvRun) {
          const Rf* pixel = pictureRun.first;
          const Rf* c = yuvRun.first;
          for (std::int32_t i = 0; i < n; ++i, pixel += pictureRun.step, c += yuvRun.step)
            to[i] = withYuv(*pixel, {c->red, c->green, c->blue});
        },
        *picture, *yuv);
  }
};

// Green and blue become red, in place.
class RedSpreader : public HvImgProc1<RfTexture> {
 public:
  void processRows() override {
    const HvRowLoop loop = this->rowLoop();
    for (std::int32_t y = loop.firstRow; y < loop.lastRow; y += loop.rowStep) {
      if (loop.x1 >= loop.x2 || poll(this->interrupt) != 0) return;
      Rf* pixel = this->target->target(loop.x1, y);
      for (std::int32_t i = 0; i < loop.x2 - loop.x1; ++i)
        pixel[i].green = pixel[i].blue = pixel[i].red;
    }
  }
};

}  // namespace vblur
