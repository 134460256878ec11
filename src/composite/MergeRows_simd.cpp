#include "composite/MergeRows.h"

#include "image/VectorTargets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "composite/MergeRows_simd.cpp"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "composite/FlatMerge-inl.h"

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

template <class Pixel>
MergeRow<Pixel> ArithmeticRow(std::int32_t method, MergeForm form, const MergeWeights& weights) {
  switch (method) {
    case kMergeDarken: return RowOf<Darken<Pixel>, Pixel>(form, weights);
    case kMergeLighten: return RowOf<Lighten<Pixel>, Pixel>(form, weights);
    case kMergeScreen: return RowOf<Screen<Pixel>, Pixel>(form, weights);
    case kMergeMultiply: return RowOf<Multiply<Pixel>, Pixel>(form, weights);
    case kMergeAdd: return RowOf<Add<Pixel>, Pixel>(form, weights);
    case kMergeSubtract: return RowOf<Subtract<Pixel>, Pixel>(form, weights);
    case kMergeDifference: return RowOf<Difference<Pixel>, Pixel>(form, weights);
    case kMergeOverlay: return RowOf<Overlay<Pixel>, Pixel>(form, weights);
    case kMergeHardLight: return RowOf<HardLight<Pixel>, Pixel>(form, weights);
    case kMergeAddOver: return RowOf<AddOver<Pixel>, Pixel>(form, weights);
    case kMergeAddUnder: return RowOf<AddUnder<Pixel>, Pixel>(form, weights);
    default: return nullptr;
  }
}

MergeRow<R8> ArithmeticRow8(std::int32_t method, MergeForm form, const MergeWeights& weights) {
  return ArithmeticRow<R8>(method, form, weights);
}

MergeRow<R16> ArithmeticRow16(std::int32_t method, MergeForm form, const MergeWeights& weights) {
  return ArithmeticRow<R16>(method, form, weights);
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vblur {
namespace {

HWY_EXPORT(ArithmeticRow8);
HWY_EXPORT(ArithmeticRow16);

}  // namespace

template <>
MergeRow<R8> arithmeticRow<R8>(std::int32_t method, MergeForm form, const MergeWeights& weights) {
  return HWY_DYNAMIC_DISPATCH(ArithmeticRow8)(method, form, weights);
}

template <>
MergeRow<R16> arithmeticRow<R16>(std::int32_t method, MergeForm form, const MergeWeights& weights) {
  return HWY_DYNAMIC_DISPATCH(ArithmeticRow16)(method, form, weights);
}

}  // namespace vblur
#endif  // HWY_ONCE
