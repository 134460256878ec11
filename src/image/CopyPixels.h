// Copies whole pixels of a run, and fills rows with one pixel.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "image/CopyBits.h"
#include "image/HvCpu.h"
#include "image/HvTexture.h"
#include "image/VectorRun.h"

namespace vblur {

template <class Pixel>
void copyPixelsPlain(Pixel* out, const HvPixelRun<Pixel>& run, std::int32_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i)
    out[i] = run.first[i * run.step];
}

template <class Pixel>
void fillPixelsPlain(Pixel* out, Pixel pixel, std::int32_t n) {
  for (std::ptrdiff_t i = 0; i < n; ++i)
    out[i] = pixel;
}

// n times one pixel, which may lie in the row that is written.
template <class Pixel>
void fillPixels(Pixel* out, const Pixel& pixel, std::int32_t n) {
  if constexpr (isWordOfRows(sizeof(Pixel))) {
    if (HvUsesVectors()) return fillWords(sizeof(Pixel), &pixel, n, out);
  }
  fillPixelsPlain(out, pixel, n);
}

// n pixels with all components 0.
template <class Pixel>
void clearPixels(Pixel* out, std::int32_t n) {
  clearBytes(out, static_cast<std::size_t>(n) * sizeof(Pixel));
}

// Copies n pixels of a run of at least n to a contiguous row; pixel by pixel from the front if the two overlap.
template <class Pixel>
void copyPixels(Pixel* out, const HvPixelRun<Pixel>& run, std::int32_t n) {
  // A contiguous run: memmove, for the reasons given at clearBytes.
  if (isVectorRun(run, out, n)) {
    std::memmove(static_cast<void*>(out), run.first, static_cast<std::size_t>(n) * sizeof(Pixel));
    return;
  }
  if (run.step == 0) return fillPixels(out, *run.first, n);
  if constexpr (isWordOfRows(sizeof(Pixel))) {
    if (isMirroredVectorRun(run, out, n)) return mirrorWords(sizeof(Pixel), run.first, n, out);
  }
  copyPixelsPlain(out, run, n);
}

}  // namespace vblur
