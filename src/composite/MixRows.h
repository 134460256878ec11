// The mixes of contiguous pixels by vector code, equal bit for bit to the plain loops of the processors named below.
// `out` may be one of the inputs.
#pragma once

#include <cstdint>

#include "image/Pixels.h"

namespace vblur {

// MixCombiner: a * weights.a + b * weights.b, clamped to 0..One if `limits`; otherwise the caller knows that it fits.
// Weights of integers are at most kMostWeight; floats have no limits.
struct MixRowWeights {
  float a;
  float b;
  bool limits;
};
void mixRow(const R8* a, const R8* b, R8* out, std::int32_t n, const MixRowWeights& weights);
void mixRow(const R16* a, const R16* b, R16* out, std::int32_t n, const MixRowWeights& weights);
void mixRow(const Rf* a, const Rf* b, Rf* out, std::int32_t n, const MixRowWeights& weights);

// HvQuickMixer: amount is 0..Max.
void quickMixRow(const R8* a, const R8* b, R8* out, std::int32_t n, std::int32_t amount);
void quickMixRow(const R16* a, const R16* b, R16* out, std::int32_t n, std::int32_t amount);
void quickMixRow(const Rf* a, const Rf* b, Rf* out, std::int32_t n, float amount);

// HvDsMaskFixer: `out` mixed over the source by the source's alpha; alpha and the named colours are the source's.
void mixByAlphaRow(const R8* source, R8* out, std::int32_t n, std::int32_t named);
void mixByAlphaRow(const R16* source, R16* out, std::int32_t n, std::int32_t named);
void mixByAlphaRow(const Rf* source, Rf* out, std::int32_t n, std::int32_t named);

// HvDsPaintCombiner: `out` over the source by the mask.
void paintRow(const R8* source, const C8* mask, R8* out, std::int32_t n);
void paintRow(const R16* source, const C16* mask, R16* out, std::int32_t n);
void paintRow(const Rf* source, const Cf* mask, Rf* out, std::int32_t n);

}  // namespace vblur
