// The plain loop of the mixes and merges.
#pragma once

#include <cstdint>

#include "image/HvTexture.h"

namespace vblur {

// out[i] = result(a, b, out[i]) for n pixels, one after the other; out may be the memory of a run.
template <class A, class B, class Out, class Result>
void mapRuns(Out* out, std::int32_t n, const HvPixelRun<A>& runA, const HvPixelRun<B>& runB, const Result& result) {
  const A* a = runA.first;
  const B* b = runB.first;
  for (std::int32_t i = 0; i < n; ++i, a += runA.step, b += runB.step)
    out[i] = result(*a, *b, out[i]);
}

}  // namespace vblur
