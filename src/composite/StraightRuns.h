// Runs of any step for code that needs contiguous pixels.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "image/CopyPixels.h"
#include "image/HvTexture.h"
#include "image/VectorRun.h"

namespace vblur {

// Size of the buffer that runs of other steps are copied to, in pixels.
inline constexpr std::int32_t kStraightPixels = 256;

// Whether n pixels of a run may be read before any of n pixels at `out` is written: they do not overlap, or each lies
// where its result goes. Otherwise the pixels must be processed one by one.
template <class Pixel, class Out>
bool mayReadAhead(const HvPixelRun<Pixel>& run, const Out* out, std::int32_t n) {
  const auto address = [](const void* p) { return reinterpret_cast<std::uintptr_t>(p); };
  if (run.step == 1 && address(run.first) == address(out)) return sizeof(Pixel) == sizeof(Out);
  return liesApart(run, out, n);
}

// Contiguous pixels of a run, copied to a buffer unless its step is 1.
template <class Pixel>
class StraightRun {
 public:
  explicit StraightRun(const HvPixelRun<Pixel>& run) : run_(run) {}
  StraightRun(const StraightRun&) = delete;
  StraightRun& operator=(const StraightRun&) = delete;

  // `count` pixels from i on; at most kStraightPixels unless the step is 1. Calls are in ascending order of i.
  const Pixel* at(std::int32_t i, std::int32_t count) {
    if (run_.step == 1) return run_.first + i;
    if (run_.step == 0 && i != 0) return pixels_;
    const std::ptrdiff_t before = static_cast<std::ptrdiff_t>(i) * run_.step;
    copyPixels(pixels_, {run_.first + before, run_.step, count, run_.exists}, count);
    return pixels_;
  }

 private:
  HvPixelRun<Pixel> run_;
  Pixel pixels_[kStraightPixels];
};

// Calls row(a, b, out, count) for n pixels in blocks. Returns false, with nothing done, if the pixels must be processed
// one by one.
template <class A, class B, class Out, class Row>
bool runStraight(Out* out, std::int32_t n, const HvPixelRun<A>& runA, const HvPixelRun<B>& runB, const Row& row) {
  if (!mayReadAhead(runA, out, n) || !mayReadAhead(runB, out, n)) return false;
  StraightRun<A> a(runA);
  StraightRun<B> b(runB);
  const std::int32_t most = runA.step == 1 && runB.step == 1 ? n : kStraightPixels;
  for (std::int32_t i = 0; i < n; i += most) {
    const std::int32_t count = std::min(most, n - i);
    row(a.at(i, count), b.at(i, count), out + i, count);
  }
  return true;
}

}  // namespace vblur
