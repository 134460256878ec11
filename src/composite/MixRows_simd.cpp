#include "composite/MixRows.h"

#include "image/VectorTargets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "composite/MixRows_simd.cpp"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "composite/PixelVectors-inl.h"

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

template <bool kLimits, class Pixel>
void Mix(const Pixel* a, const Pixel* b, Pixel* out, std::int32_t n, const MixRowWeights& weights) {
  const FloatTag d;
  const Floats weightA = hn::Set(d, weights.a);
  const Floats weightB = hn::Set(d, weights.b);
  const auto store = [](Floats v) HWY_ATTR {
    return Truncated(kLimits ? Limited(v, 0.0f, static_cast<float>(Pixel::kOne)) : v);
  };
  ForGroups(a, b, out, n, [&](const Pixel* groupA, const Pixel* groupB, Pixel* to) HWY_ATTR {
    const Planes<Floats> sum =
        WeightedSum(WidenedToFloat(LoadPixels(groupA)), weightA, WidenedToFloat(LoadPixels(groupB)), weightB);
    StorePixels(Planes<Ints>{store(sum.red), store(sum.green), store(sum.blue), store(sum.alpha)}, to);
  });
}

template <class Pixel>
void EitherMix(const Pixel* a, const Pixel* b, Pixel* out, std::int32_t n, const MixRowWeights& weights) {
  EnterKernel<Pixel, "mixRow 8", "mixRow 16">();
  return weights.limits ? Mix<true>(a, b, out, n, weights) : Mix<false>(a, b, out, n, weights);
}

// v / 32767, truncated, for any difference of two components times a component.
HWY_INLINE Ints DividedBy32767(Ints v) {
  const IntTag d;
  const auto sign = hn::ShiftRight<31>(v);
  const auto magnitude = hn::Sub(hn::Xor(v, sign), sign);
  const auto upper = hn::ShiftRight<15>(magnitude);
  const auto sum = hn::Add(hn::Add(upper, hn::And(magnitude, hn::Set(d, 32767))), hn::Set(d, 1));
  const auto quotient = hn::Add(upper, hn::ShiftRight<15>(hn::Add(sum, hn::ShiftRight<15>(sum))));
  return hn::Sub(hn::Xor(quotient, sign), sign);
}

// mixInt of Arithmetic.h.
template <class Pixel>
HWY_INLINE Ints MixInt(Ints a, Ints b, Ints m) {
  const Ints product = hn::Mul(hn::Sub(a, b), m);
  return hn::Add(b, Pixel::kMax == 255 ? SmallDividedBy255(product) : DividedBy32767(product));
}

template <class Pixel>
HWY_INLINE Planes<Ints> MixInt(const Planes<Ints>& a, const Planes<Ints>& b, Ints m) {
  return EachOf(a, b, [&](Ints ofA, Ints ofB) HWY_ATTR { return MixInt<Pixel>(ofA, ofB, m); });
}

// The amounts of a group's pixels, and the mix of a group.
template <class Pixel>
struct GroupMix {
  using Amounts = Ints;
  static HWY_INLINE Amounts All(std::int32_t amount) { return hn::Set(IntTag(), amount); }
  static HWY_INLINE Amounts AlphaOf(const Pixel* pixels) { return LoadPixels(pixels).alpha; }
  template <class MaskPixel>
  static HWY_INLINE Amounts Of(const MaskPixel* mask) {
#if HWY_TARGET == HWY_SCALAR
    return hn::Set(IntTag(), mask->value);
#else
    // The order of LoadPixels: pixels of the lower and the upper half alternate.
    const IntTag d;
    alignas(HWY_MAX_BYTES) std::int32_t order[HWY_MAX_BYTES / sizeof(std::int32_t)];
    for (std::int32_t i = 0; i < GroupSize(); ++i)
      order[i] = (i & 1) * (GroupSize() / 2) + i / 2;
    const auto values = hn::LoadU(hn::Rebind<std::int16_t, IntTag>(), &mask->value);
    return hn::TableLookupLanes(hn::PromoteTo(d, values), hn::SetTableIndices(d, order));
#endif
  }
  static HWY_INLINE void Store(const Pixel* a, const Pixel* b, Amounts m, Pixel* to) {
    StorePixels(MixInt<Pixel>(LoadPixels(a), LoadPixels(b), m), to);
  }
  // The named colours and alpha come from b.
  static HWY_INLINE void StoreUnnamed(const Pixel* a, const Pixel* b, Amounts m, std::int32_t named, Pixel* to) {
    const Planes<Ints> planeB = LoadPixels(b);
    Planes<Ints> mixed = MixInt<Pixel>(LoadPixels(a), planeB, m);
    if ((named & 1) != 0) mixed.red = planeB.red;
    if ((named & 2) != 0) mixed.green = planeB.green;
    if ((named & 4) != 0) mixed.blue = planeB.blue;
    mixed.alpha = planeB.alpha;
    StorePixels(mixed, to);
  }
};

#if HWY_TARGET != HWY_SCALAR
// Interleaved bytes: a pixel's amount is in both 16-bit halves of its lane.
template <>
struct GroupMix<R8> {
  using Amounts = hn::Vec<WordTag>;
  static HWY_INLINE Amounts All(std::int32_t amount) { return hn::Set(WordTag(), static_cast<std::uint16_t>(amount)); }
  static HWY_INLINE Amounts InBothHalves(Raw m) { return hn::BitCast(WordTag(), hn::Or(m, hn::ShiftLeft<16>(m))); }
  static HWY_INLINE Amounts AlphaOf(const R8* pixels) { return InBothHalves(hn::ShiftRight<24>(LoadRaw(pixels))); }
  static HWY_INLINE Amounts Of(const C8* mask) {
    const auto values = hn::LoadU(hn::Rebind<std::uint8_t, UnsignedTag>(), &mask->value);
    return InBothHalves(hn::PromoteTo(UnsignedTag(), values));
  }
  // By the distance of a and b, since the quotient is truncated.
  static HWY_INLINE Raw Mixed(Raw rawA, Raw rawB, Amounts m) {
    const ByteTag d;
    const auto a = hn::BitCast(d, rawA);
    const auto b = hn::BitCast(d, rawB);
    const auto greater = hn::Max(a, b);
    const Raw distance = hn::BitCast(UnsignedTag(), hn::Sub(greater, hn::Min(a, b)));
    const Raw way =
        BytesOf(WordsOver255(hn::Mul(EvenBytes(distance), m)), WordsOver255(hn::Mul(OddBytes(distance), m)));
    const auto step = hn::BitCast(d, way);
    return hn::BitCast(UnsignedTag(), hn::IfThenElse(hn::Eq(greater, a), hn::Add(b, step), hn::Sub(b, step)));
  }
  static HWY_INLINE void Store(const R8* a, const R8* b, Amounts m, R8* to) {
    StoreRaw(Mixed(LoadRaw(a), LoadRaw(b), m), to);
  }
  static HWY_INLINE void StoreUnnamed(const R8* a, const R8* b, Amounts m, std::int32_t named, R8* to) {
    const Raw rawB = LoadRaw(b);
    const auto byteOf = [named](int c) { return (named & (1 << c)) != 0 ? 0xFFu << (8 * c) : 0u; };
    const Raw kept = hn::Set(UnsignedTag(), 0xFF000000u | byteOf(0) | byteOf(1) | byteOf(2));
    StoreRaw(hn::Or(hn::And(kept, rawB), hn::AndNot(kept, Mixed(LoadRaw(a), rawB, m))), to);
  }
};
#endif

template <class Pixel>
void QuickMix(const Pixel* a, const Pixel* b, Pixel* out, std::int32_t n, std::int32_t amount) {
  EnterKernel<Pixel, "quickMixRow 8", "quickMixRow 16">();
  const auto m = GroupMix<Pixel>::All(amount);
  ForGroups(a, b, out, n, [&](const Pixel* groupA, const Pixel* groupB, Pixel* to) HWY_ATTR {
    GroupMix<Pixel>::Store(groupA, groupB, m, to);
  });
}

template <class Pixel>
void MixByAlpha(const Pixel* source, Pixel* out, std::int32_t n, std::int32_t named) {
  EnterKernel<Pixel, "mixByAlphaRow 8", "mixByAlphaRow 16">();
  ForGroups(source, source, out, n, [&](const Pixel* group, const Pixel*, Pixel* to) HWY_ATTR {
    GroupMix<Pixel>::StoreUnnamed(to, group, GroupMix<Pixel>::AlphaOf(group), named, to);
  });
}

// Mask values of 0 and Top need no special case: they give the source and the target exactly.
template <class Pixel, class MaskPixel>
void Paint(const Pixel* source, const MaskPixel* mask, Pixel* out, std::int32_t n) {
  EnterKernel<Pixel, "paintRow 8", "paintRow 16">();
  ForGroups(source, mask, out, n, [&](const Pixel* group, const MaskPixel* groupMask, Pixel* to) HWY_ATTR {
    GroupMix<Pixel>::Store(to, group, GroupMix<Pixel>::Of(groupMask), to);
  });
}

void Mix8(const R8* a, const R8* b, R8* out, std::int32_t n, const MixRowWeights& weights) {
  EitherMix(a, b, out, n, weights);
}
void Mix16(const R16* a, const R16* b, R16* out, std::int32_t n, const MixRowWeights& weights) {
  EitherMix(a, b, out, n, weights);
}
void QuickMix8(const R8* a, const R8* b, R8* out, std::int32_t n, std::int32_t amount) {
  QuickMix(a, b, out, n, amount);
}
void QuickMix16(const R16* a, const R16* b, R16* out, std::int32_t n, std::int32_t amount) {
  QuickMix(a, b, out, n, amount);
}
void MixByAlpha8(const R8* source, R8* out, std::int32_t n, std::int32_t named) {
  MixByAlpha(source, out, n, named);
}
void MixByAlpha16(const R16* source, R16* out, std::int32_t n, std::int32_t named) {
  MixByAlpha(source, out, n, named);
}
void Paint8(const R8* source, const C8* mask, R8* out, std::int32_t n) {
  Paint(source, mask, out, n);
}
void Paint16(const R16* source, const C16* mask, R16* out, std::int32_t n) {
  Paint(source, mask, out, n);
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vblur {
namespace {

HWY_EXPORT(Mix8);
HWY_EXPORT(Mix16);
HWY_EXPORT(QuickMix8);
HWY_EXPORT(QuickMix16);
HWY_EXPORT(MixByAlpha8);
HWY_EXPORT(MixByAlpha16);
HWY_EXPORT(Paint8);
HWY_EXPORT(Paint16);

}  // namespace

void mixRow(const R8* a, const R8* b, R8* out, std::int32_t n, const MixRowWeights& weights) {
  HWY_DYNAMIC_DISPATCH(Mix8)(a, b, out, n, weights);
}
void mixRow(const R16* a, const R16* b, R16* out, std::int32_t n, const MixRowWeights& weights) {
  HWY_DYNAMIC_DISPATCH(Mix16)(a, b, out, n, weights);
}
void quickMixRow(const R8* a, const R8* b, R8* out, std::int32_t n, std::int32_t amount) {
  HWY_DYNAMIC_DISPATCH(QuickMix8)(a, b, out, n, amount);
}
void quickMixRow(const R16* a, const R16* b, R16* out, std::int32_t n, std::int32_t amount) {
  HWY_DYNAMIC_DISPATCH(QuickMix16)(a, b, out, n, amount);
}
void mixByAlphaRow(const R8* source, R8* out, std::int32_t n, std::int32_t named) {
  HWY_DYNAMIC_DISPATCH(MixByAlpha8)(source, out, n, named);
}
void mixByAlphaRow(const R16* source, R16* out, std::int32_t n, std::int32_t named) {
  HWY_DYNAMIC_DISPATCH(MixByAlpha16)(source, out, n, named);
}
void paintRow(const R8* source, const C8* mask, R8* out, std::int32_t n) {
  HWY_DYNAMIC_DISPATCH(Paint8)(source, mask, out, n);
}
void paintRow(const R16* source, const C16* mask, R16* out, std::int32_t n) {
  HWY_DYNAMIC_DISPATCH(Paint16)(source, mask, out, n);
}

}  // namespace vblur
#endif  // HWY_ONCE
