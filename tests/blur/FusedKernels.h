// The kernels of both passes in one, for tests and benchmarks: a picture of three rows.
#pragma once

#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "blur/FusedPasses.h"
#include "blur/GaussFilter.h"
#include "image/HvCpu.h"
#include "tests/support/KernelCase.h"

namespace vblur::test {

template <class Pixel>
void blurThreeRows(const Pixel* in, std::int32_t n, Pixel* out) {
  constexpr std::int32_t kRows = 3;
  constexpr float kRadius = 1.25f;
  using Accum = std::conditional_t<Pixel::kIntegral, Ri, Rf>;
  HvTexture<Pixel, Accum> source;
  HvTexture<Pixel, Accum> result;
  source.wrap(n / kRows, kRows, const_cast<Pixel*>(in));
  source.setEdgeMethods(kEdgeWrap, kEdgeWrap);
  result.wrap(n / kRows, kRows, out);
  if (n == 0) return;
  if (HvUsesVectors()) {
    const auto box = boxOf<Pixel>(kRadius);
    FusedPasses<Pixel, Accum> passes(result, box, box, {0, n / kRows}, {0, kRows}, {}, 1);
    passes.run(source, result, nullptr);
    return;
  }
  BlurRGBAGauss<Pixel, Accum, Pixel::kMax, 1, 1, 1, 1> filter;
  filter.keepsIntermediate = false;
  filter.sizeX = filter.sizeY = kRadius;
  filter.process(&source, &result);
}

template <class Pixel>
void addFused(std::vector<KernelCase>& cases) {
  const std::string name = "fuseBand " + std::to_string(8 * sizeof(ComponentOf<Pixel>));
  cases.push_back(rowCase<Pixel, Pixel>(name, name, blurThreeRows<Pixel>));
  // Rows of whole cache lines.
  cases.back().unit = 3 * kFusedPixels<Pixel>;
}

inline void addFusedKernels(std::vector<KernelCase>& cases) {
  addFused<R8>(cases);
  addFused<R16>(cases);
  addFused<Rf>(cases);
}

}  // namespace vblur::test
