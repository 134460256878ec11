// Copies whole pixels over the window. What lies beyond the input's box comes from its edge methods,
// so a cropped input writes the extended picture.
#pragma once

#include "image/Sampler.h"
#include "image/SimpleLineCopier.h"

namespace vblur {

template <class Pixel, class Accum>
class SimpleCopySampler : public Sampler<HvTexture<Pixel, Accum>, HvTexture<Pixel, Accum>>,
                          public SimpleLineCopier<Pixel, Accum> {
 public:
  using Texture = HvTexture<Pixel, Accum>;

  void processRows(Texture* in, Texture* out) override {
    const HvRowLoop loop = this->rowLoop();
    for (std::int32_t y = loop.firstRow; y < loop.lastRow; y += loop.rowStep) {
      Pixel* to = out->target(loop.x1, y);
      for (std::int32_t x = loop.x1; x < loop.x2;)
        x += this->copyRun(to, *in, x, y, loop.x2);
      if (poll(this->interrupt) != 0) return;
    }
  }
};

}  // namespace vblur
