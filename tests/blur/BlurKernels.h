// The kernels of src/blur, for tests and benchmarks.
#pragma once

#include "blur/ChannelRows.h"
#include "blur/ColourRows.h"
#include "blur/SubtractCombiner.h"
#include "tests/blur/FusedKernels.h"
#include "tests/blur/StripKernels.h"
#include "tests/support/KernelCase.h"

namespace vblur::test {

template <class Pixel, class Single>
void addChannelRows(std::vector<KernelCase>& cases, const std::string& bits) {
  cases.push_back(rowCase<Pixel, Single>(
      "extractRow " + bits, "extractRow " + bits,
      [](const Pixel* in, std::int32_t n, Single* out) { extractRow<1>(out, forwardRun(in, n), n); }));
  cases.push_back(rowCase<Single, Pixel>(
      "spreadRow " + bits, "spreadRow " + bits,
      [](const Single* in, std::int32_t n, Pixel* out) { spreadRow<Pixel::kMax>(out, forwardRun(in, n), {}, n); }));
}

template <class Pixel>
void addColourRows(std::vector<KernelCase>& cases, const std::string& bits) {
  cases.push_back(rowCase<Pixel, Pixel>(
      "yuvRow " + bits, "yuvRow " + bits,
      [](const Pixel* in, std::int32_t n, Pixel* out) { yuvRowFromRgb<Pixel::kMax>(out, forwardRun(in, n), n); }));
  cases.push_back(rowCase<Pixel, Pixel>(
      "rgbRow " + bits, "rgbRow " + bits,
      [](const Pixel* in, std::int32_t n, Pixel* out) { rgbRowFromYuv<Pixel::kMax>(out, forwardRun(in, n), n); }));
}

template <class Pixel>
void addReflection(std::vector<KernelCase>& cases, const std::string& bits) {
  using Accum = std::conditional_t<Pixel::kIntegral, Ri, Rf>;
  using Texture = HvTexture<Pixel, Accum>;
  cases.push_back(pairCase<Pixel, Pixel, Pixel>("reflectRow " + bits, "reflectRow " + bits,
                                                [](const Pixel* a, const Pixel* b, std::int32_t n, Pixel* out) {
                                                  Texture first;
                                                  Texture second;
                                                  Texture result;
                                                  first.wrap(n, 1, const_cast<Pixel*>(a));
                                                  second.wrap(n, 1, const_cast<Pixel*>(b));
                                                  result.wrap(n, 1, out);
                                                  SubtractCombiner<Pixel, Accum, Pixel::kMax> combiner;
                                                  combiner.process(&first, &second, &result);
                                                }));
}

inline std::vector<KernelCase> blurKernels() {
  std::vector<KernelCase> cases;
  addChannelRows<R8, C8>(cases, "8");
  addChannelRows<R16, C16>(cases, "16");
  addColourRows<R8>(cases, "8");
  addColourRows<R16>(cases, "16");
  addReflection<R8>(cases, "8");
  addReflection<R16>(cases, "16");
  addReflection<Rf>(cases, "float");
  addStripKernels(cases);
  addFusedKernels(cases);
  return cases;
}

}  // namespace vblur::test
