// Whether a run of pixels may go through vector code.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/HvCpu.h"
#include "image/HvTexture.h"

namespace vblur {

// Whether a loop from the front on reads what it has written, as it does within one row that is moved to the
// right. Such a row goes one pixel at a time.
inline bool readsItsWrites(const void* in, const void* out, std::size_t bytes) {
  const auto distance = reinterpret_cast<std::uintptr_t>(out) - reinterpret_cast<std::uintptr_t>(in);
  return distance != 0 && distance < bytes;
}

// n pixels of the run lie side by side, and may be read several at a time before results go to `out`.
template <class Pixel>
bool isVectorRun(const HvPixelRun<Pixel>& run, const void* out, std::int32_t n) {
  return run.step == 1 && HvUsesVectors() &&
         !readsItsWrites(run.first, out, static_cast<std::size_t>(n) * sizeof(Pixel));
}

}  // namespace vblur
