// Integer forms of operations on interleaved components, in lanes of the component's own width. Compiled once for each
// instruction set.
#if defined(VBLUR_COMPOSITE_FLATMERGE_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VBLUR_COMPOSITE_FLATMERGE_INL_H
#undef VBLUR_COMPOSITE_FLATMERGE_INL_H
#else
#define VBLUR_COMPOSITE_FLATMERGE_INL_H
#endif

#include <cstdint>
#include <type_traits>

#include <hwy/highway.h>

#include "composite/MergeVectors-inl.h"
#include "composite/PixelVectors-inl.h"
#include "composite/PlaneMerge-inl.h"

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR
template <class Operation>
struct FlatForm {
  static constexpr bool kExists = false;
};

HWY_INLINE Raw ProductBytes(Raw a, Raw b) {
  return BytesOf(WordsOver255(hn::Mul(EvenBytes(a), EvenBytes(b))), WordsOver255(hn::Mul(OddBytes(a), OddBytes(b))));
}

// Twice the product / 255, clamped to 255. The saturated sum of 65535 gives 257, which is clamped as well.
HWY_INLINE hn::Vec<WordTag> DoubledOver255(hn::Vec<WordTag> product) {
  return hn::Min(WordsOver255(hn::SaturatedAdd(product, product)), hn::Set(WordTag(), 255));
}

HWY_INLINE Ints ColourSumOf(Raw v) {
  const UnsignedTag d;
  const auto low = hn::Set(d, 255);
  const auto sum = hn::Add(hn::And(v, low), hn::And(hn::ShiftRight<8>(v), low));
  return hn::BitCast(IntTag(), hn::Add(sum, hn::And(hn::ShiftRight<16>(v), low)));
}

template <>
struct FlatForm<Screen<R8>> {
  static constexpr bool kExists = true;
  static HWY_INLINE Raw Of(Raw a, Raw b) {
    // The sum may wrap; the result lies in 0..255.
    const Raw screened = AsLanes(ByteTag(), AsLanes(ByteTag(), a, b, SumOf()), ProductBytes(a, b), DifferenceOf());
    return WithAlphaOf(screened, AsLanes(ByteTag(), a, b, GreaterOf()));
  }
};

template <>
struct FlatForm<Multiply<R8>> {
  static constexpr bool kExists = true;
  static HWY_INLINE Raw Of(Raw a, Raw b) {
    return WithAlphaOf(ProductBytes(a, b), AsLanes(ByteTag(), a, b, LesserOf()));
  }
};

template <>
struct FlatForm<HardLight<R8>> {
  static constexpr bool kExists = true;
  static HWY_INLINE Raw Of(Raw a, Raw b) {
    return BytesOf(DoubledOver255(hn::Mul(EvenBytes(a), EvenBytes(b))),
                   DoubledOver255(hn::Mul(OddBytes(a), OddBytes(b))));
  }
};

template <>
struct FlatForm<Overlay<R8>> : FlatForm<HardLight<R8>> {};

template <>
struct FlatForm<Darken<R8>> {
  static constexpr bool kExists = true;
  static HWY_INLINE Raw Of(Raw a, Raw b) {
    const auto first = hn::RebindMask(UnsignedTag(), hn::Gt(ColourSumOf(b), ColourSumOf(a)));
    return hn::AndNot(AlphaMask(), hn::IfThenElse(first, a, b));
  }
};

template <>
struct FlatForm<Lighten<R8>> {
  static constexpr bool kExists = true;
  static HWY_INLINE Raw Of(Raw a, Raw b) {
    return hn::IfThenElse(hn::RebindMask(UnsignedTag(), hn::Gt(ColourSumOf(a), ColourSumOf(b))), a, b);
  }
};

// Saturating arithmetic clamps to the pixel's range.
template <class Pixel>
using ComponentTag = std::conditional_t<Pixel::kMax == 255, ByteTag, ShortTag>;

template <class Pixel>
struct FlatForm<Add<Pixel>> {
  static constexpr bool kExists = true;
  static HWY_INLINE Raw Of(Raw a, Raw b) {
    const ComponentTag<Pixel> d;
    return hn::BitCast(UnsignedTag(), hn::SaturatedAdd(hn::BitCast(d, a), hn::BitCast(d, b)));
  }
};

template <class Pixel>
struct FlatForm<Subtract<Pixel>> {
  static constexpr bool kExists = true;
  static HWY_INLINE Raw Of(Raw a, Raw b) {
    const ComponentTag<Pixel> d;
    return hn::BitCast(UnsignedTag(), hn::SaturatedSub(hn::BitCast(d, a), hn::BitCast(d, b)));
  }
};

template <class Pixel>
struct FlatForm<Difference<Pixel>> {
  static constexpr bool kExists = true;
  static HWY_INLINE Raw Of(Raw a, Raw b) {
    const ComponentTag<Pixel> d;
    return FlatForm<Subtract<Pixel>>::Of(AsLanes(d, a, b, GreaterOf()), AsLanes(d, a, b, LesserOf()));
  }
};

template <class Operation, class Pixel>
void FlatRow(const Pixel* a, const Pixel* b, Pixel* out, std::int32_t n, const MergeWeights&) {
  EnterKernel<Pixel, "mergeFlatRow 8", "mergeFlatRow 16", HWY_TARGETS & ~HWY_SCALAR>();
  const std::int32_t vector = GroupSize() * 4 / static_cast<std::int32_t>(sizeof(Pixel));
  ForGroups(a, b, out, n, [&](const Pixel* groupA, const Pixel* groupB, Pixel* to) HWY_ATTR {
    for (std::int32_t i = 0; i < GroupSize(); i += vector)
      StoreRaw(FlatForm<Operation>::Of(LoadRaw(groupA + i), LoadRaw(groupB + i)), to + i);
  });
}

// The float form of an operation on stored 8-bit pixels. It equals the integer form unless a quotient is subtracted.
template <class Operation>
struct FlatFloatForm : FlatForm<Operation> {};

// Truncating a + b - product rounds the product up.
template <>
struct FlatFloatForm<Screen<R8>> {
  static HWY_INLINE Raw Of(Raw a, Raw b) {
    const auto roundedUp = [](hn::Vec<WordTag> product)
                               HWY_ATTR { return WordsOver255(hn::Add(product, hn::Set(WordTag(), 254))); };
    const Raw product =
        BytesOf(roundedUp(hn::Mul(EvenBytes(a), EvenBytes(b))), roundedUp(hn::Mul(OddBytes(a), OddBytes(b))));
    const Raw screened = AsLanes(ByteTag(), AsLanes(ByteTag(), a, b, SumOf()), product, DifferenceOf());
    return WithAlphaOf(screened, AsLanes(ByteTag(), a, b, GreaterOf()));
  }
};

// A blend without gains, whose mix needs no clamp.
HWY_INLINE bool IsPlainBlend(const MergeWeights& w) {
  return w.gainA == 1.0f && w.gainB == 1.0f && w.weightA >= 0.0f && w.weightB >= 0.0f && w.weightA + w.weightB <= 1.0f;
}

template <class Operation, MergeForm Form>
void FlatBlendedRow(const R8* a, const R8* b, R8* out, std::int32_t n, const MergeWeights& weights) {
  HvEnterKernel<"mergeFlatBlendRow 8", HWY_TARGETS & ~HWY_SCALAR>(HWY_TARGET);
  const Floats weightA = hn::Set(FloatTag(), weights.weightA);
  const Floats weightB = hn::Set(FloatTag(), weights.weightB);
  ForGroups(a, b, out, n, [&](const R8* groupA, const R8* groupB, R8* to) HWY_ATTR {
    const Raw rawA = LoadRaw(groupA);
    const Raw rawB = LoadRaw(groupB);
    const Raw result = FlatFloatForm<Operation>::Of(rawA, rawB);
    const Planes<Floats> first = WidenedToFloat(PlanesOf(Form == MergeForm::TowardsB ? result : rawA));
    const Planes<Floats> second = WidenedToFloat(PlanesOf(Form == MergeForm::TowardsB ? rawB : result));
    const Planes<Floats> sum = WeightedSum(first, weightA, second, weightB);
    StorePixels(Planes<Ints>{Truncated(sum.red), Truncated(sum.green), Truncated(sum.blue), Truncated(sum.alpha)}, to);
  });
}

template <class Operation>
MergeRow<R8> FlatBlendedRowOf(MergeForm form, const MergeWeights& weights, R8) {
  if (Operation::kMixesOperands || !IsPlainBlend(weights)) return nullptr;
  switch (form) {
    case MergeForm::TowardsB: return &FlatBlendedRow<Operation, MergeForm::TowardsB>;
    case MergeForm::TowardsA: return &FlatBlendedRow<Operation, MergeForm::TowardsA>;
    default: return nullptr;
  }
}

template <class Operation>
MergeRow<R16> FlatBlendedRowOf(MergeForm, const MergeWeights&, R16) {
  return nullptr;
}
#endif

template <class Operation, class Pixel>
MergeRow<Pixel> RowOf(MergeForm form, [[maybe_unused]] const MergeWeights& weights) {
#if HWY_TARGET != HWY_SCALAR
  if constexpr (FlatForm<Operation>::kExists) {
    if (form == MergeForm::Integer) return &FlatRow<Operation, Pixel>;
    const MergeRow<Pixel> blended = FlatBlendedRowOf<Operation>(form, weights, Pixel());
    return blended != nullptr ? blended : FloatRowOf<Operation, Pixel>(form);
  }
#endif
  return form == MergeForm::Integer ? &Row<Operation, MergeForm::Integer, Pixel> : FloatRowOf<Operation, Pixel>(form);
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#endif
