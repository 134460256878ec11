// The plain loops of the merge: a run of pixels by one operation in one form.
#pragma once

#include <cstdint>

#include "composite/PixelMath.h"
#include "composite/PlainRuns.h"
#include "image/HvTexture.h"

namespace vblur {

// How gains and blend enter a merge of a and b.
enum class MergeForm {
  Integer,   // gains of 1 and a blend of one half: the stored pixels as they are. Not of floats
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

// a over b by the weights. Those of floats sum to 1: the mix lies between the two, and is one of them at either end.
template <class Pixel>
constexpr Rf blended(const Rf& a, float weightA, const Rf& b, float weightB) {
  if constexpr (Pixel::kIntegral) {
    return weightedSum(a, weightA, b, weightB);
  } else {
    return mixPixels(a, b, weightA);
  }
}

// The mix that is an operand.
template <class Pixel>
constexpr Rf mixedOperand(const Rf& wideA, const Rf& wideB, const MergeWeights& w) {
  if constexpr (Pixel::kIntegral) {
    return weightedSum(wideA, w.mixA, wideB, w.mixB);
  } else {
    return mixPixels(gained<Pixel>(wideA, w.gainA), gained<Pixel>(wideB, w.gainB), w.weightA);
  }
}

// One pixel. An operation that mixes its operands takes the mix as one operand; any other mixes its finished result
// with a or b.
template <class Operation, MergeForm Form, class Pixel = typename Operation::Pixel>
constexpr Pixel merged(const Pixel& a, const Pixel& b, const MergeWeights& w) {
  if constexpr (Form == MergeForm::Integer) {
    return Operation::ofIntegers(a, b);
  } else {
    const Rf wideA = widenedToFloat(a);
    const Rf wideB = widenedToFloat(b);
    const Rf gainedA = gained<Pixel>(wideA, w.gainA);
    const Rf gainedB = gained<Pixel>(wideB, w.gainB);
    if constexpr (Form == MergeForm::Gained) {
      return Operation::ofFloats(gainedA, gainedB);
    } else if constexpr (!Operation::kMixesOperands) {
      const Rf result = widenedToFloat(Operation::ofFloats(gainedA, gainedB));
      return Form == MergeForm::TowardsB ? finished<Pixel>(blended<Pixel>(result, w.weightA, gainedB, w.weightB))
                                         : finished<Pixel>(blended<Pixel>(gainedA, w.weightA, result, w.weightB));
    } else if constexpr (Form == MergeForm::TowardsB) {
      return Operation::ofFloats(mixedOperand<Pixel>(wideA, wideB, w), gainedB);
    } else {
      // In this form alone the first picture's alpha takes the second picture's gain.
      const float alpha = Operation::kTakesFirstAlpha ? gained<Pixel>(wideA, w.gainB).alpha : gainedA.alpha;
      return Operation::ofFloats(withAlpha(gainedA, alpha), mixedOperand<Pixel>(wideA, wideB, w));
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
  mapRuns(out, n, runA, runB,
          [w = weights](const Pixel& a, const Pixel& b, const Pixel&) { return merged<Operation, Form>(a, b, w); });
}

}  // namespace vblur
