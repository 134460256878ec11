// A choice of the four components at compile time.
#pragma once

#include <bit>
#include <cstdint>
#include <type_traits>

#include "image/Arithmetic.h"
#include "image/CopyBits.h"
#include "image/CopyPixels.h"
#include "image/HvTexture.h"
#include "image/VectorRun.h"

namespace vblur {

// 1 for each component that is chosen.
template <int R, int G, int B, int A>
struct ChannelMask {
  static constexpr int kCount = R + G + B + A;
  using Others = ChannelMask<1 - R, 1 - G, 1 - B, 1 - A>;
  static constexpr bool kAll = kCount == 4;
  static constexpr bool chosen(int component) {
    return component == 0 ? R : component == 1 ? G : component == 2 ? B : A;
  }
  // The chosen component number `place`, counted from 0; -1: there are fewer.
  static constexpr int componentAt(int place) {
    for (int c = 0; c < 4; ++c) {
      if (chosen(c) && place-- == 0) return c;
    }
    return -1;
  }
};

// Vector code handles a pixel as one word.
template <class Pixel>
inline constexpr bool kIsWord = PixelTraits<Pixel>::kComponents == 4 && sizeof(Pixel) <= 8;
template <class Pixel>
using WordOf = std::conditional_t<sizeof(Pixel) == 4, std::uint32_t, std::uint64_t>;

template <class Mask, class Pixel>
constexpr WordOf<Pixel> chosenBits() {
  Pixel pixel{};
  for (int c = 0; c < 4; ++c)
    pixel[c] = storeNarrow<ComponentOf<Pixel>>(Mask::chosen(c) ? -1 : 0);
  return std::bit_cast<WordOf<Pixel>>(pixel);
}

template <class Mask, class Pixel>
void copyChannelsPlain(Pixel* out, const HvPixelRun<Pixel>& run, std::int32_t n) {
  const Pixel* in = run.first;
  for (std::int32_t i = 0; i < n; ++i, in += run.step) {
    if constexpr (Mask::chosen(0)) out[i].red = in->red;
    if constexpr (Mask::chosen(1)) out[i].green = in->green;
    if constexpr (Mask::chosen(2)) out[i].blue = in->blue;
    if constexpr (Mask::chosen(3)) out[i].alpha = in->alpha;
  }
}

// Copies the chosen components of n pixels of a run and keeps the others.
template <class Mask, class Pixel>
void copyChannels(Pixel* out, const HvPixelRun<Pixel>& run, std::int32_t n) {
  if constexpr (Mask::kAll) {
    copyPixels(out, run, n);
  } else if constexpr (kIsWord<Pixel>) {
    constexpr WordOf<Pixel> kChosen = chosenBits<Mask, Pixel>();
    if (isVectorRun(run, out, n)) return copyBits(run.first, n, kChosen, out);
    if (isMirroredVectorRun(run, out, n)) return mirrorBits(run.first, n, kChosen, out);
    if (run.step == 0 && HvUsesVectors()) return fillBits(std::bit_cast<WordOf<Pixel>>(*run.first), n, kChosen, out);
    copyChannelsPlain<Mask>(out, run, n);
  } else {
    copyChannelsPlain<Mask>(out, run, n);
  }
}

}  // namespace vblur
