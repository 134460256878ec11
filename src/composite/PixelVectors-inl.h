// Pixels of a run as planes of 32-bit lanes, and the functions of PixelMath.h on planes. Compiled once for each
// instruction set.
//
// Floats stay finite and below 2^31: weights beyond kMostWeight take the plain code (RowWeights.h).
#if defined(VBLUR_COMPOSITE_PIXELVECTORS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VBLUR_COMPOSITE_PIXELVECTORS_INL_H
#undef VBLUR_COMPOSITE_PIXELVECTORS_INL_H
#else
#define VBLUR_COMPOSITE_PIXELVECTORS_INL_H
#endif

#include <algorithm>
#include <cstdint>
#include <cstring>

#include <hwy/highway.h>

#include "composite/ExactQuotients.h"
#include "image/HvKernel.h"
#include "image/Pixels.h"

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using IntTag = hn::ScalableTag<std::int32_t>;
using UnsignedTag = hn::RebindToUnsigned<IntTag>;
using FloatTag = hn::RebindToFloat<IntTag>;
using Ints = hn::Vec<IntTag>;
using Floats = hn::Vec<FloatTag>;

// Enters the kernel of the pixel's depth.
template <class Pixel, HvKernelName At8, HvKernelName At16, std::int64_t kTargets = HWY_TARGETS>
HWY_INLINE void EnterKernel() {
  if constexpr (Pixel::kMax == 255) {
    HvEnterKernel<At8, kTargets>(HWY_TARGET);
  } else {
    HvEnterKernel<At16, kTargets>(HWY_TARGET);
  }
}

// One lane per pixel. At 16 bits the lanes are a permutation of the pixels, the same one in every group.
template <class V>
struct Planes {
  V red;
  V green;
  V blue;
  V alpha;
};

// Pixels per group: one vector of 8-bit pixels, two of 16-bit ones.
HWY_INLINE std::int32_t GroupSize() {
  return static_cast<std::int32_t>(hn::Lanes(IntTag()));
}

// Calls body(a, b, out) for each group of n pixels; it may read `out` too. An incomplete last group is processed in
// local copies, so that nothing outside the n pixels is accessed.
template <class A, class B, class Out, class Body>
HWY_INLINE void ForGroups(const A* a, const B* b, Out* out, std::int32_t n, const Body& body) {
  constexpr std::size_t kMost = HWY_MAX_BYTES / sizeof(std::int32_t);
  A lastA[kMost];
  B lastB[kMost];
  Out lastOut[kMost];
  const std::int32_t size = GroupSize();
  for (std::int32_t i = 0; i < n; i += size) {
    const auto rest = std::min<std::size_t>(static_cast<std::uint32_t>(n - i), kMost);
    const bool whole = size <= n - i;
    const A* fromA = a + i;
    const B* fromB = b + i;
    Out* to = out + i;
    if (HWY_UNLIKELY(!whole)) {
      std::fill_n(lastA, kMost, A{});
      std::fill_n(lastB, kMost, B{});
      fromA = std::copy_n(fromA, rest, lastA) - rest;
      fromB = std::copy_n(fromB, rest, lastB) - rest;
      std::fill_n(lastOut, kMost, Out{});
      to = std::copy_n(to, rest, lastOut) - rest;
    }
    body(fromA, fromB, to);
    if (HWY_UNLIKELY(!whole)) std::copy_n(lastOut, rest, out + i);
  }
}

#if HWY_TARGET == HWY_SCALAR
template <class Pixel>
HWY_INLINE Planes<Ints> LoadPixels(const Pixel* pixels) {
  const IntTag d;
  return {hn::Set(d, pixels->red), hn::Set(d, pixels->green), hn::Set(d, pixels->blue), hn::Set(d, pixels->alpha)};
}

template <class Pixel>
HWY_INLINE void StorePixels(const Planes<Ints>& p, Pixel* pixels) {
  using Component = typename Pixel::Component;
  pixels->red = static_cast<Component>(hn::GetLane(p.red));
  pixels->green = static_cast<Component>(hn::GetLane(p.green));
  pixels->blue = static_cast<Component>(hn::GetLane(p.blue));
  pixels->alpha = static_cast<Component>(hn::GetLane(p.alpha));
}
#else
using ByteTag = hn::Repartition<std::uint8_t, IntTag>;
using Raw = hn::Vec<UnsignedTag>;

// A vector of interleaved pixels.
template <class Pixel>
HWY_INLINE Raw LoadRaw(const Pixel* pixels) {
  return hn::BitCast(UnsignedTag(), hn::LoadU(ByteTag(), reinterpret_cast<const std::uint8_t*>(pixels)));
}

template <class V, class Pixel>
HWY_INLINE void StoreRaw(V v, Pixel* pixels) {
  hn::StoreU(hn::BitCast(ByteTag(), v), ByteTag(), reinterpret_cast<std::uint8_t*>(pixels));
}

HWY_INLINE Planes<Ints> PlanesOf(Raw v) {
  const IntTag d;
  const UnsignedTag du;
  const auto low = hn::Set(du, 255);
  return {hn::BitCast(d, hn::And(v, low)), hn::BitCast(d, hn::And(hn::ShiftRight<8>(v), low)),
          hn::BitCast(d, hn::And(hn::ShiftRight<16>(v), low)), hn::BitCast(d, hn::ShiftRight<24>(v))};
}

HWY_INLINE Planes<Ints> LoadPixels(const R8* pixels) {
  return PlanesOf(LoadRaw(pixels));
}

// All lanes lie in 0..255.
HWY_INLINE void StorePixels(const Planes<Ints>& p, R8* pixels) {
  StoreRaw(
      hn::Or(hn::Or(p.red, hn::ShiftLeft<8>(p.green)), hn::Or(hn::ShiftLeft<16>(p.blue), hn::ShiftLeft<24>(p.alpha))),
      pixels);
}

// 64-bit pixels in two vectors, and the same as planes of their lower and upper 32 bits.
struct Halves {
  Ints lower;
  Ints upper;
};

// Transposes the 32-bit lanes of each 2 x 2 block. It is its own inverse.
HWY_INLINE Halves Exchanged(const Halves& h) {
  const IntTag d;
  const hn::Repartition<std::uint64_t, IntTag> d64;
  return {hn::OddEven(hn::BitCast(d, hn::ShiftLeft<32>(hn::BitCast(d64, h.upper))), h.lower),
          hn::OddEven(h.upper, hn::BitCast(d, hn::ShiftRight<32>(hn::BitCast(d64, h.lower))))};
}

HWY_INLINE Planes<Ints> LoadPixels(const R16* pixels) {
  const IntTag d;
  const Halves h = Exchanged({hn::BitCast(d, LoadRaw(pixels)), hn::BitCast(d, LoadRaw(pixels + GroupSize() / 2))});
  return {hn::ShiftRight<16>(hn::ShiftLeft<16>(h.lower)), hn::ShiftRight<16>(h.lower),
          hn::ShiftRight<16>(hn::ShiftLeft<16>(h.upper)), hn::ShiftRight<16>(h.upper)};
}

// Stores the low 16 bits.
HWY_INLINE void StorePixels(const Planes<Ints>& p, R16* pixels) {
  const IntTag d;
  const hn::Repartition<std::int16_t, IntTag> d16;
  const auto pair = [&](Ints low, Ints high) HWY_ATTR {
    return hn::BitCast(d, hn::OddEven(hn::BitCast(d16, hn::ShiftLeft<16>(high)), hn::BitCast(d16, low)));
  };
  const Halves h = Exchanged({pair(p.red, p.green), pair(p.blue, p.alpha)});
  StoreRaw(h.lower, pixels);
  StoreRaw(h.upper, pixels + GroupSize() / 2);
}
#endif

// of(component of p, component of q) for all four components.
template <class V, class Of>
HWY_INLINE auto EachOf(const Planes<V>& p, const Planes<V>& q, const Of& of) -> Planes<decltype(of(p.red, q.red))> {
  return {of(p.red, q.red), of(p.green, q.green), of(p.blue, q.blue), of(p.alpha, q.alpha)};
}

HWY_INLINE Planes<Floats> WidenedToFloat(const Planes<Ints>& p) {
  const FloatTag d;
  return {hn::ConvertTo(d, p.red), hn::ConvertTo(d, p.green), hn::ConvertTo(d, p.blue), hn::ConvertTo(d, p.alpha)};
}

HWY_INLINE Planes<Floats> ScaledBy(const Planes<Floats>& p, Floats gain) {
  return {hn::Mul(p.red, gain), hn::Mul(p.green, gain), hn::Mul(p.blue, gain), hn::Mul(p.alpha, gain)};
}

HWY_INLINE Planes<Floats> WeightedSum(const Planes<Floats>& a, Floats weightA, const Planes<Floats>& b,
                                      Floats weightB) {
  const auto sum = [&](Floats ofA, Floats ofB)
                       HWY_ATTR { return hn::Add(hn::Mul(ofA, weightA), hn::Mul(ofB, weightB)); };
  return EachOf(a, b, sum);
}

// Truncates; |v| < 2^31. On x86, Highway's ConvertTo spends four of its five instructions on lanes out of range, half
// the time of a mix.
HWY_INLINE Ints Truncated(Floats v) {
#if HWY_ARCH_X86 && HWY_TARGET <= HWY_SSSE3 && (HWY_COMPILER_GCC || HWY_COMPILER_CLANG)
  using IntVector __attribute__((vector_size(sizeof(v.raw)))) = std::int32_t;
  using RawInts = decltype(hn::Zero(IntTag()).raw);
  return Ints{reinterpret_cast<RawInts>(__builtin_convertvector(v.raw, IntVector))};
#else
  return hn::ConvertTo(IntTag(), v);
#endif
}

HWY_INLINE Floats Limited(Floats v, float low, float high) {
  const FloatTag d;
  return hn::Min(hn::Max(v, hn::Set(d, low)), hn::Set(d, high));
}

template <class Pixel>
HWY_INLINE Ints StoreClamped(Floats v) {
  return Truncated(Limited(v, static_cast<float>(Pixel::kMin), static_cast<float>(Pixel::kMax)));
}

template <class Pixel>
HWY_INLINE Ints StoreClamped(Ints v) {
  const IntTag d;
  return hn::Min(hn::Max(v, hn::Set(d, Pixel::kMin)), hn::Set(d, Pixel::kMax));
}

template <class Pixel, class V>
HWY_INLINE Planes<Ints> Finished(const Planes<V>& p) {
  return {StoreClamped<Pixel>(p.red), StoreClamped<Pixel>(p.green), StoreClamped<Pixel>(p.blue),
          StoreClamped<Pixel>(p.alpha)};
}

template <class V>
HWY_INLINE V ColourSum(const Planes<V>& p) {
  return hn::Add(hn::Add(p.red, p.green), p.blue);
}

template <class Mask, class V>
HWY_INLINE Planes<V> Chosen(Mask mask, const Planes<V>& yes, const Planes<V>& no) {
  return {hn::IfThenElse(mask, yes.red, no.red), hn::IfThenElse(mask, yes.green, no.green),
          hn::IfThenElse(mask, yes.blue, no.blue), hn::IfThenElse(mask, yes.alpha, no.alpha)};
}

// v / 16384, truncated.
HWY_INLINE Ints DividedBy16384(Ints v) {
  const IntTag d;
  const auto negative = hn::BitCast(UnsignedTag(), hn::ShiftRight<31>(v));
  const auto bias = hn::BitCast(d, hn::ShiftRight<18>(negative));
  return hn::ShiftRight<14>(hn::Add(v, bias));
}

// v / kDivisor by exact::rounded where there is FMA: a division takes ten times as long.
template <std::int32_t kDivisor>
HWY_INLINE Floats Divided(Floats v) {
  const FloatTag d;
  const Floats divisor = hn::Set(d, static_cast<float>(kDivisor));
#if HWY_ARCH_X86 && HWY_TARGET <= HWY_AVX2 && !defined(HWY_DISABLE_BMI2_FMA)
  const Floats reciprocal = hn::Set(d, 1.0f / static_cast<float>(kDivisor));
  const Floats quotient = hn::Mul(v, reciprocal);
  return hn::MulAdd(hn::NegMulAdd(quotient, divisor, v), reciprocal, quotient);
#else
  return hn::Div(v, divisor);
#endif
}

// v / 255, truncated, over the domain of exact::smallOver255.
HWY_INLINE Ints SmallDividedBy255(Ints v) {
  return Truncated(hn::Mul(hn::ConvertTo(FloatTag(), v), hn::Set(FloatTag(), exact::kOne255th)));
}

#if HWY_TARGET != HWY_SCALAR
// Interleaved 8-bit components.
using WordTag = hn::Repartition<std::uint16_t, IntTag>;
using ShortTag = hn::Repartition<std::int16_t, IntTag>;

// The even and the odd bytes as 16-bit lanes, and back.
HWY_INLINE hn::Vec<WordTag> EvenBytes(Raw v) {
  return hn::And(hn::BitCast(WordTag(), v), hn::Set(WordTag(), 255));
}
HWY_INLINE hn::Vec<WordTag> OddBytes(Raw v) {
  return hn::ShiftRight<8>(hn::BitCast(WordTag(), v));
}
HWY_INLINE Raw BytesOf(hn::Vec<WordTag> even, hn::Vec<WordTag> odd) {
  return hn::BitCast(UnsignedTag(), hn::Or(even, hn::ShiftLeft<8>(odd)));
}

HWY_INLINE hn::Vec<WordTag> WordsOver255(hn::Vec<WordTag> v) {
  const auto high = hn::MulHigh(v, hn::Set(WordTag(), static_cast<std::uint16_t>(exact::kOver255)));
  return hn::ShiftRight<exact::kOver255Shift - 16>(high);
}

template <class Tag, class Of>
HWY_INLINE Raw AsLanes(Tag d, Raw a, Raw b, const Of& of) {
  return hn::BitCast(UnsignedTag(), of(hn::BitCast(d, a), hn::BitCast(d, b)));
}

HWY_INLINE Raw AlphaMask() {
  return hn::Set(UnsignedTag(), 0xFF000000u);
}

HWY_INLINE Raw WithAlphaOf(Raw colours, Raw alphas) {
  return hn::Or(hn::AndNot(AlphaMask(), colours), hn::And(AlphaMask(), alphas));
}

#endif

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#endif
