#include "composite/MergeRows.h"

#include "composite/RowWeights.h"
#include "image/HvCpu.h"

namespace vblur {

template <class Pixel>
MergeRow<Pixel> mergeRowFor(std::int32_t method, MergeForm form, const MergeWeights& w) {
  if (!HvUsesVectors() || !rowWeightsFit(w.gainA, w.gainB, w.weightA, w.weightB, w.mixA, w.mixB)) return nullptr;
  const MergeRow<Pixel> row = colourRow<Pixel>(method, form, w);
  return row != nullptr ? row : arithmeticRow<Pixel>(method, form, w);
}

template <>
MergeRow<Rf> mergeRowFor<Rf>(std::int32_t method, MergeForm form, const MergeWeights& /*weights*/) {
  return HvUsesVectors() ? floatRow(method, form) : nullptr;
}

template MergeRow<R8> mergeRowFor<R8>(std::int32_t, MergeForm, const MergeWeights&);
template MergeRow<R16> mergeRowFor<R16>(std::int32_t, MergeForm, const MergeWeights&);

}  // namespace vblur
