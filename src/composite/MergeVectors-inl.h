// The loops of MergeKernel.h on planes: a row by one operation in one form. Compiled once for each instruction set.
#if defined(VBLUR_COMPOSITE_MERGEVECTORS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VBLUR_COMPOSITE_MERGEVECTORS_INL_H
#undef VBLUR_COMPOSITE_MERGEVECTORS_INL_H
#else
#define VBLUR_COMPOSITE_MERGEVECTORS_INL_H
#endif

#include <cstdint>

#include <hwy/highway.h>

#include "composite/MergeKernel.h"
#include "composite/MergeRows.h"
#include "composite/PixelVectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

struct WeightLanes {
  explicit WeightLanes(const MergeWeights& w)
      : gainA(hn::Set(FloatTag(), w.gainA)),
        gainB(hn::Set(FloatTag(), w.gainB)),
        weightA(hn::Set(FloatTag(), w.weightA)),
        weightB(hn::Set(FloatTag(), w.weightB)),
        mixA(hn::Set(FloatTag(), w.mixA)),
        mixB(hn::Set(FloatTag(), w.mixB)) {}

  Floats gainA;
  Floats gainB;
  Floats weightA;
  Floats weightB;
  Floats mixA;
  Floats mixB;
};

template <class Operation, MergeForm Form, class Pixel>
HWY_INLINE Planes<Ints> Merged(const Planes<Ints>& a, const Planes<Ints>& b, const WeightLanes& w) {
  if constexpr (Form == MergeForm::Integer) {
    return Operation::Of(a, b);
  } else {
    const Planes<Floats> wideA = WidenedToFloat(a);
    const Planes<Floats> wideB = WidenedToFloat(b);
    const Planes<Floats> gainedA = ScaledBy(wideA, w.gainA);
    const Planes<Floats> gainedB = ScaledBy(wideB, w.gainB);
    if constexpr (Form == MergeForm::Gained) {
      return Operation::Of(gainedA, gainedB);
    } else if constexpr (!Operation::kMixesOperands) {
      const Planes<Floats> result = WidenedToFloat(Operation::Of(gainedA, gainedB));
      return Finished<Pixel>(Form == MergeForm::TowardsB ? WeightedSum(result, w.weightA, gainedB, w.weightB)
                                                         : WeightedSum(gainedA, w.weightA, result, w.weightB));
    } else if constexpr (Form == MergeForm::TowardsB) {
      return Operation::Of(WeightedSum(wideA, w.mixA, wideB, w.mixB), gainedB);
    } else {
      Planes<Floats> first = gainedA;
      if constexpr (Operation::kTakesFirstAlpha) first.alpha = hn::Mul(wideA.alpha, w.gainB);
      return Operation::Of(first, WeightedSum(wideA, w.mixA, wideB, w.mixB));
    }
  }
}

template <class Operation, MergeForm Form, class Pixel>
void Row(const Pixel* a, const Pixel* b, Pixel* out, std::int32_t n, const MergeWeights& weights) {
  EnterKernel<Pixel, "mergeRow 8", "mergeRow 16">();
  const WeightLanes w(weights);
  ForGroups(a, b, out, n, [&](const Pixel* groupA, const Pixel* groupB, Pixel* to) HWY_ATTR {
    StorePixels(Merged<Operation, Form, Pixel>(LoadPixels(groupA), LoadPixels(groupB), w), to);
  });
}

template <class Operation, class Pixel>
MergeRow<Pixel> FloatRowOf(MergeForm form) {
  switch (form) {
    case MergeForm::TowardsB: return &Row<Operation, MergeForm::TowardsB, Pixel>;
    case MergeForm::TowardsA: return &Row<Operation, MergeForm::TowardsA, Pixel>;
    default: return &Row<Operation, MergeForm::Gained, Pixel>;
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#endif
