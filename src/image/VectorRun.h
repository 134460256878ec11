// Whether a run of pixels may go through vector code.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "image/HvCpu.h"
#include "image/HvTexture.h"

namespace vblur {

// Whether a forward loop reads its own results: a row that is shifted to the right in place. Such a row is
// processed one pixel at a time.
inline bool readsItsWrites(const void* in, const void* out, std::size_t bytes) {
  const auto distance = reinterpret_cast<std::uintptr_t>(out) - reinterpret_cast<std::uintptr_t>(in);
  return distance != 0 && distance < bytes;
}

// n pixels of the run are contiguous, and whole vectors of them may be read before results go to `out`.
template <class Pixel>
bool isVectorRun(const HvPixelRun<Pixel>& run, const void* out, std::int32_t n) {
  return run.step == 1 && HvUsesVectors() &&
         !readsItsWrites(run.first, out, static_cast<std::size_t>(n) * sizeof(Pixel));
}

// n pixels of the run, n at least 1, do not overlap n at `out`.
template <class Pixel, class Out>
bool liesApart(const HvPixelRun<Pixel>& run, const Out* out, std::int32_t n) {
  const auto address = [](const void* p) { return reinterpret_cast<std::uintptr_t>(p); };
  const Pixel* last = run.first + static_cast<std::ptrdiff_t>(n - 1) * run.step;
  return address(std::max(run.first, last) + 1) <= address(out) ||
         address(out + n) <= address(std::min(run.first, last));
}

// The same for a contiguous run in reverse.
template <class Pixel>
bool isMirroredVectorRun(const HvPixelRun<Pixel>& run, const Pixel* out, std::int32_t n) {
  return run.step == -1 && n > 0 && HvUsesVectors() && liesApart(run, out, n);
}

}  // namespace vblur
