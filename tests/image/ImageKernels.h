// The kernels of src/image, for tests and benchmarks.
#pragma once

#include "image/ChannelMask.h"
#include "image/CopyPixels.h"
#include "tests/support/KernelCase.h"

namespace vblur::test {

// Red and blue of a row.
template <class Pixel>
void addChannelCopies(std::vector<KernelCase>& cases, const std::string& bits) {
  using Mask = ChannelMask<1, 0, 1, 0>;
  cases.push_back(rowCase<Pixel, Pixel>(
      "copyChannels " + bits, "copyBits " + bits,
      [](const Pixel* in, std::int32_t n, Pixel* out) { copyChannels<Mask>(out, forwardRun(in, n), n); }));
  cases.push_back(rowCase<Pixel, Pixel>(
      "mirrorChannels " + bits, "mirrorBits " + bits,
      [](const Pixel* in, std::int32_t n, Pixel* out) { copyChannels<Mask>(out, reverseRun(in, n), n); }));
  cases.push_back(rowCase<Pixel, Pixel>(
      "fillChannels " + bits, "fillBits " + bits,
      [](const Pixel* in, std::int32_t n, Pixel* out) { copyChannels<Mask>(out, repeatedRun(in, n), n); }));
}

template <class Pixel>
void addPixelCopies(std::vector<KernelCase>& cases) {
  const std::string bits = std::to_string(8 * sizeof(Pixel));
  cases.push_back(rowCase<Pixel, Pixel>(
      "mirrorPixels " + bits, "mirrorWords",
      [](const Pixel* in, std::int32_t n, Pixel* out) { copyPixels(out, reverseRun(in, n), n); }));
  cases.push_back(rowCase<Pixel, Pixel>(
      "fillPixels " + bits, "fillWords",
      [](const Pixel* in, std::int32_t n, Pixel* out) { copyPixels(out, repeatedRun(in, n), n); }));
}

inline std::vector<KernelCase> imageKernels() {
  std::vector<KernelCase> cases;
  addChannelCopies<R8>(cases, "32");
  addChannelCopies<R16>(cases, "64");
  addPixelCopies<R8>(cases);
  addPixelCopies<R16>(cases);
  addPixelCopies<Ri>(cases);
  return cases;
}

}  // namespace vblur::test
