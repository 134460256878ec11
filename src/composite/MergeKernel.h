// The plain loops of the merge: a run of pixels by one operation in one form.
#pragma once

#include <cstdint>

#include "composite/PixelMath.h"
#include "image/HvTexture.h"

namespace vblur {

// How gains and blend enter a merge of a and b.
enum class MergeForm {
  Integer,   // gains of 1 and a blend of one half: the stored pixels as they are
  Gained,    // gains alone
  TowardsA,  // a blend below one half
  TowardsB,  // a blend above one half
};

struct MergeWeights {
  float gainA = 1.0f;
  float gainB = 1.0f;
  // The share of each picture in the mix, and the same times its gain.
  float weightA = 1.0f;
  float weightB = 1.0f;
  float mixA = 0.0f;
  float mixB = 0.0f;
};

// One pixel. An operation that mixes its operands takes the mix as one operand; any other mixes its finished result
// with a or b.
template <class Operation, MergeForm Form, class Pixel = typename Operation::Pixel>
constexpr Pixel merged(const Pixel& a, const Pixel& b, const MergeWeights& w) {
  if constexpr (Form == MergeForm::Integer) {
    return Operation::ofIntegers(a, b);
  } else {
    const Rf wideA = widenedToFloat(a);
    const Rf wideB = widenedToFloat(b);
    const Rf gainedA = scaledBy(wideA, w.gainA);
    const Rf gainedB = scaledBy(wideB, w.gainB);
    if constexpr (Form == MergeForm::Gained) {
      return Operation::ofFloats(gainedA, gainedB);
    } else if constexpr (!Operation::kMixesOperands) {
      const Rf result = widenedToFloat(Operation::ofFloats(gainedA, gainedB));
      return Form == MergeForm::TowardsB ? finished<Pixel>(weightedSum(result, w.weightA, gainedB, w.weightB))
                                         : finished<Pixel>(weightedSum(gainedA, w.weightA, result, w.weightB));
    } else if constexpr (Form == MergeForm::TowardsB) {
      return Operation::ofFloats(weightedSum(wideA, w.mixA, wideB, w.mixB), gainedB);
    } else {
      Rf first = gainedA;
      // In this form alone the first picture's alpha takes the second picture's gain.
      if constexpr (Operation::kTakesFirstAlpha) first.alpha = wideA.alpha * w.gainB;
      return Operation::ofFloats(first, weightedSum(wideA, w.mixA, wideB, w.mixB));
    }
  }
}

// Writes n pixels to out, which may be the memory of a run.
template <class Pixel>
using MergeKernel = void (*)(Pixel* out, std::int32_t n, const HvPixelRun<Pixel>& runA, const HvPixelRun<Pixel>& runB,
                             const MergeWeights& weights);

template <class Operation, MergeForm Form, class Pixel = typename Operation::Pixel>
void mergeRun(Pixel* out, std::int32_t n, const HvPixelRun<Pixel>& runA, const HvPixelRun<Pixel>& runB,
              const MergeWeights& weights) {
  const MergeWeights w = weights;
  const Pixel* a = runA.first;
  const Pixel* b = runB.first;
  for (std::int32_t i = 0; i < n; ++i, a += runA.step, b += runB.step)
    out[i] = merged<Operation, Form>(*a, *b, w);
}

}  // namespace vblur
