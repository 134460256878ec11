// The inner loop of the plain filter: one box over a block of lines that lie side by side.
//
// A block holds one 32-bit value per lane and position, position i of lane l at data[i * Lanes + l]. Lanes are the
// components of neighbouring rows (x pass) or columns (y pass).
#pragma once

#include <algorithm>
#include <cstdint>

#include "blur/BoxConstants.h"
#include "image/Arithmetic.h"

namespace vblur {

// The positions first to last - 1 that a box reads to produce a to b - 1. For radii below zero the ends swap.
struct BoxReach {
  std::int64_t first = 0;
  std::int64_t last = 0;
};

constexpr BoxReach boxReach(std::int64_t a, std::int64_t b, const BoxShape& box) {
  const std::int64_t leaving = -static_cast<std::int64_t>(box.r) - box.d;
  const std::int64_t entering = static_cast<std::int64_t>(box.r) + 1;
  return {a + std::min(leaving, entering), b + std::max(leaving, entering)};
}

// One position of a box without a fraction. The product is at most 2^30: a sum of 2r + 1 components of at most 2^16,
// times a scale of at most 2^14 / (2r + 1).
template <int Lanes>
inline void boxStepWhole(const std::int32_t* in, const std::int32_t* out, std::int32_t* __restrict sum,
                         std::int32_t* __restrict result, const BoxConstants& box) {
  for (int l = 0; l < Lanes; ++l) {
    result[l] = wrapAdd(wrapMul(sum[l], box.scale), 8192) >> 14;
    sum[l] = wrapSub(wrapAdd(sum[l], in[l]), out[l]);
  }
}

// One position of a box with a fraction. The end taps are weighted and truncated separately: in + out is at most
// 2^17 and frac below 2^14. The second product is bounded as above, with 2r + 1 + 2f taps.
template <int Lanes>
inline void boxStepFraction(const std::int32_t* in, const std::int32_t* out, std::int32_t* __restrict sum,
                            std::int32_t* __restrict result, const BoxConstants& box) {
  for (int l = 0; l < Lanes; ++l) {
    const std::int32_t inner = wrapSub(sum[l], out[l]);
    const std::int32_t ends = wrapMul(wrapAdd(in[l], out[l]), box.frac) >> 14;
    result[l] = wrapAdd(wrapMul(wrapAdd(inner, ends), box.scale), 8192) >> 14;
    sum[l] = wrapAdd(inner, in[l]);
  }
}

// Filters positions a to b - 1. source(i) is position i of the source block, which holds boxReach(a, b); result(i) is
// the row of Lanes values for position i; sink(i) is called when that row is done.
template <int Lanes, class Source, class Result, class Sink>
void filterBox(std::int64_t a, std::int64_t b, const BoxConstants& box, const Source& source, const Result& result,
               const Sink& sink) {
  if (a >= b) return;
  alignas(64) std::int32_t sum[Lanes] = {};
  for (std::int64_t i = a - box.reach(); i <= a + box.r; ++i) {
    const std::int32_t* p = source(i);
    for (int l = 0; l < Lanes; ++l)
      sum[l] = wrapAdd(sum[l], p[l]);
  }
  const std::int32_t* in = source(a + box.r + 1);
  const std::int32_t* out = source(a - box.reach());
  const auto run = [&](auto step) {
    for (std::int64_t i = a; i < b; ++i, in += Lanes, out += Lanes) {
      step(in, out, sum, result(i), box);
      sink(i);
    }
  };
  if (box.d == 0) {
    run(boxStepWhole<Lanes>);
  } else {
    run(boxStepFraction<Lanes>);
  }
}

}  // namespace vblur
