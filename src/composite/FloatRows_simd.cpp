#include <algorithm>
#include <type_traits>

#include "composite/HvMerge.h"
#include "composite/MergeRows.h"
#include "composite/MixRows.h"
#include "composite/PixelMath.h"
#include "image/HvKernel.h"
#include "image/VectorTargets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "composite/FloatRows_simd.cpp"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

// Pixels of floats by the functions of the plain loops, compiled for each instruction set: the compiler puts
// neighbouring pixels into lanes.
HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

constexpr std::int32_t kBlock = 64;

// A number for each pixel of a block: the compiler does not vectorise choices by what is the same for all of them, and
// puts the components of one pixel into lanes that are multiplied by the same, which takes twice as long.
struct ForEachOfBlock {
  explicit ForEachOfBlock(float number) { std::fill_n(numbers, kBlock, number); }
  float numbers[kBlock];
};

// out[i] = of(i, place in its block), in blocks whose results lie apart from what is read: the output may be one of the
// inputs. Flattened, or the compiler would call functions for each pixel. kClearsAlpha: alpha is 0, which comes after
// the rest, or the compiler would not use vectors.
template <bool kClearsAlpha = false, class Of>
[[gnu::flatten]] void ForBlocks(Rf* out, std::int32_t n, const Of& of) {
  Rf results[kBlock];
  for (std::int32_t first = 0; first < n; first += kBlock) {
    const std::int32_t count = std::min(kBlock, n - first);
    for (std::int32_t i = 0; i < count; ++i)
      results[i] = of(first + i, i);
    for (std::int32_t i = 0; kClearsAlpha && i < count; ++i)
      results[i].alpha = 0.0f;
    std::copy_n(results, count, out + first);
  }
}

template <class Operation, MergeForm Form>
struct MergedPixel {
  Rf operator()(std::int32_t i, std::int32_t place) const {
    MergeWeights w = weights;
    w.weightA = weightsA.numbers[place];
    w.gainA = gainsA.numbers[place];
    return merged<Operation, Form>(a[i], b[i], w);
  }
  const Rf* a;
  const Rf* b;
  MergeWeights weights;
  ForEachOfBlock weightsA;
  ForEachOfBlock gainsA;
};

template <class Operation, MergeForm Form>
void FloatRow(const Rf* a, const Rf* b, Rf* out, std::int32_t n, const MergeWeights& weights) {
  HvEnterKernel<"mergeRow 32", HWY_TARGETS>(HWY_TARGET);
  using Merge = HvMerge<Rf, Rf, 1>;
  constexpr bool kDarkens = std::is_same_v<Operation, Merge::Darken>;
  using Colours = std::conditional_t<kDarkens, Merge::DarkerOne, Operation>;
  ForBlocks<kDarkens>(
      out, n,
      MergedPixel<Colours, Form>{a, b, weights, ForEachOfBlock(weights.weightA), ForEachOfBlock(weights.gainA)});
}

template <class Operation>
MergeRow<Rf> FloatRowOf(MergeForm form) {
  switch (form) {
    case MergeForm::TowardsB: return &FloatRow<Operation, MergeForm::TowardsB>;
    case MergeForm::TowardsA: return &FloatRow<Operation, MergeForm::TowardsA>;
    default: return &FloatRow<Operation, MergeForm::Gained>;
  }
}

MergeRow<Rf> MergeFloats(std::int32_t method, MergeForm form) {
  using Merge = HvMerge<Rf, Rf, 1>;
  switch (method) {
    case kMergeLuminance: return FloatRowOf<Merge::Luminance>(form);
    case kMergeChroma: return FloatRowOf<Merge::Chroma>(form);
    case kMergeHue: return FloatRowOf<Merge::Hue>(form);
    case kMergeSaturation: return FloatRowOf<Merge::Saturation>(form);
    case kMergeValue: return FloatRowOf<Merge::Value>(form);
    case kMergeColour: return FloatRowOf<Merge::Colour>(form);
    case kMergeDarken: return FloatRowOf<Merge::Darken>(form);
    case kMergeLighten: return FloatRowOf<Merge::Lighten>(form);
    case kMergeScreen: return FloatRowOf<Merge::Screen>(form);
    case kMergeMultiply: return FloatRowOf<Merge::Multiply>(form);
    case kMergeAdd: return FloatRowOf<Merge::Add>(form);
    case kMergeSubtract: return FloatRowOf<Merge::Subtract>(form);
    case kMergeDifference: return FloatRowOf<Merge::Difference>(form);
    case kMergeOverlay: return FloatRowOf<Merge::Overlay>(form);
    case kMergeHardLight: return FloatRowOf<Merge::HardLight>(form);
    case kMergeAddOver: return FloatRowOf<Merge::AddOver>(form);
    case kMergeAddUnder: return FloatRowOf<Merge::AddUnder>(form);
    default: return nullptr;
  }
}

void MixFloats(const Rf* a, const Rf* b, Rf* out, std::int32_t n, const MixRowWeights& weights) {
  HvEnterKernel<"mixRow 32", HWY_TARGETS>(HWY_TARGET);
  ForBlocks(out, n, [a, b, w = weights](std::int32_t i, std::int32_t /*place*/) HWY_ATTR {
    return weightedInDoubles(a[i], b[i], double{w.a}, double{w.b});
  });
}

void QuickMixFloats(const Rf* a, const Rf* b, Rf* out, std::int32_t n, float amount) {
  HvEnterKernel<"quickMixRow 32", HWY_TARGETS>(HWY_TARGET);
  const ForEachOfBlock amounts(amount);
  ForBlocks(out, n,
            [&](std::int32_t i, std::int32_t place) HWY_ATTR { return mixPixels(a[i], b[i], amounts.numbers[place]); });
}

void MixFloatsByAlpha(const Rf* source, Rf* out, std::int32_t n, std::int32_t named) {
  HvEnterKernel<"mixByAlphaRow 32", HWY_TARGETS>(HWY_TARGET);
  ForBlocks(out, n, [source, out, named](std::int32_t i, std::int32_t /*place*/) HWY_ATTR {
    return mixedByAlpha(out[i], source[i], named);
  });
}

void PaintFloats(const Rf* source, const Cf* mask, Rf* out, std::int32_t n) {
  HvEnterKernel<"paintRow 32", HWY_TARGETS>(HWY_TARGET);
  ForBlocks(out, n, [source, mask, out](std::int32_t i, std::int32_t /*place*/) HWY_ATTR {
    return mixPixels(out[i], source[i], mask[i].value);
  });
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vblur {
namespace {

HWY_EXPORT(MergeFloats);
HWY_EXPORT(MixFloats);
HWY_EXPORT(QuickMixFloats);
HWY_EXPORT(MixFloatsByAlpha);
HWY_EXPORT(PaintFloats);

}  // namespace

MergeRow<Rf> floatRow(std::int32_t method, MergeForm form) {
  return HWY_DYNAMIC_DISPATCH(MergeFloats)(method, form);
}

void mixRow(const Rf* a, const Rf* b, Rf* out, std::int32_t n, const MixRowWeights& weights) {
  HWY_DYNAMIC_DISPATCH(MixFloats)(a, b, out, n, weights);
}
void quickMixRow(const Rf* a, const Rf* b, Rf* out, std::int32_t n, float amount) {
  HWY_DYNAMIC_DISPATCH(QuickMixFloats)(a, b, out, n, amount);
}
void mixByAlphaRow(const Rf* source, Rf* out, std::int32_t n, std::int32_t named) {
  HWY_DYNAMIC_DISPATCH(MixFloatsByAlpha)(source, out, n, named);
}
void paintRow(const Rf* source, const Cf* mask, Rf* out, std::int32_t n) {
  HWY_DYNAMIC_DISPATCH(PaintFloats)(source, mask, out, n);
}

}  // namespace vblur
#endif  // HWY_ONCE
