// The plain loop of the mixes and merges.
#pragma once

#include <cstdint>

#include "image/HvTexture.h"

namespace vblur {

// Pixels that the vector code of this folder takes. Floats run the plain loop alone, which the compiler vectorises.
template <class Pixel>
inline constexpr bool kHasVectorRows = Pixel::kIntegral;

// out[i] = result(a, b, out[i]) for n pixels, one after the other; out may be the memory of a run.
template <class A, class B, class Out, class Result>
void mapRuns(Out* out, std::int32_t n, const HvPixelRun<A>& runA, const HvPixelRun<B>& runB, const Result& result) {
  const A* a = runA.first;
  const B* b = runB.first;
  if constexpr (!kHasVectorRows<Out>) {
    // Steps that the compiler knows.
    if (runA.step == 1 && runB.step == 1) {
      for (std::int32_t i = 0; i < n; ++i)
        out[i] = result(a[i], b[i], out[i]);
      return;
    }
  }
  for (std::int32_t i = 0; i < n; ++i, a += runA.step, b += runB.step)
    out[i] = result(*a, *b, out[i]);
}

}  // namespace vblur
