// 2a - b, limited to the pixel type; floats have no limit. Unsharp masking where b is the blurred a.
#pragma once

#include <cstdint>
#include <type_traits>

#include "blur/SubtractRows.h"
#include "image/Combiner.h"
#include "image/VectorRun.h"

namespace vblur {

template <class Pixel, class Accum, std::int32_t Max>
class SubtractCombiner : public Combiner<HvTexture<Pixel, Accum>, HvTexture<Pixel, Accum>, HvTexture<Pixel, Accum>> {
 public:
  using Texture = HvTexture<Pixel, Accum>;

  using Operand = std::conditional_t<Pixel::kIntegral, std::int32_t, float>;
  static ComponentOf<Pixel> reflected(Operand a, Operand b) {
    if constexpr (Pixel::kIntegral) {
      // The doubling in float is exact: components have at most 16 bits.
      return storeClamped<Pixel>(truncToInt(static_cast<float>(a) * 2.0f) - b);
    } else {
      return a * 2.0f - b;
    }
  }

  void processRows(Texture* a, Texture* b, Texture* out) override {
    walkRuns<PollAt::BeforeRow>(
        this->rowLoop(), this->interrupt, *out,
        [](Pixel* to, std::int32_t n, const HvPixelRun<Pixel>& runA, const HvPixelRun<Pixel>& runB) {
          if (isVectorRun(runA, to, n) && isVectorRun(runB, to, n)) return reflectPixels(to, n, runA.first, runB.first);
          const Pixel* pixelA = runA.first;
          const Pixel* pixelB = runB.first;
          for (std::int32_t i = 0; i < n; ++i, pixelA += runA.step, pixelB += runB.step) {
            Pixel result{};
            result.red = reflected(pixelA->red, pixelB->red);
            result.green = reflected(pixelA->green, pixelB->green);
            result.blue = reflected(pixelA->blue, pixelB->blue);
            result.alpha = reflected(pixelA->alpha, pixelB->alpha);
            to[i] = result;
          }
        },
        *a, *b);
  }

 private:
  static void reflectPixels(Pixel* to, std::int32_t n, const Pixel* a, const Pixel* b) {
    using Component = ComponentOf<Pixel>;
    reflectRow(reinterpret_cast<const Component*>(a), reinterpret_cast<const Component*>(b), std::int64_t{4} * n,
               reinterpret_cast<Component*>(to));
  }
};

}  // namespace vblur
