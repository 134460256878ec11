// The running sums of one box over one vector of components. Each kind of sums computes the exact result in lanes as
// narrow as hold it, for a range of box sizes. Compiled once for each instruction set, by BoxSweep_simd.cpp.
//
// Every kind has: Sum, the sums of one box; Read and Write, which load and store a vector of components of a picture;
// Keep and Kept, which store and load it in a ring between two boxes; Add, which adds `in` to the sum; and Step, which
// returns one result, adds `in` to the sum and subtracts `out`. Where it costs more to read a vector twice than to keep
// it, there are three rings.
#if defined(VBLUR_BLUR_BOXSUMS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VBLUR_BLUR_BOXSUMS_INL_H
#undef VBLUR_BLUR_BOXSUMS_INL_H
#else
#define VBLUR_BLUR_BOXSUMS_INL_H
#endif

#include <cstddef>
#include <cstdint>

#include <hwy/highway.h>

#include "blur/BoxConstants.h"
#include "image/CpuIntrinsics-inl.h"

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// Vectors side by side in one step. Two of 256 bits fill a cache line, which gains more than the register spills cost.
inline constexpr std::size_t kUnitsOfStep = HWY_TARGET <= HWY_AVX2 ? 2 : 1;

// How a result vector is stored.
template <class C>
struct Output {
  const C* others;  // the source of the bits outside the mask; null: all bits are results
  const C* mask;
  bool streams;  // past the caches; the address is vector-aligned
};

template <class D, class V>
HWY_INLINE void PutOut(D d, V v, const Output<hn::TFromD<D>>& output, hn::TFromD<D>* p) {
  if (output.streams) {
    hn::Stream(v, d, p);
  } else {
    hn::StoreU(v, d, p);
  }
}

// The bits of v where the mask is set, those of `others` elsewhere.
template <class V>
HWY_INLINE V Merged(V mask, V v, V others) {
  return hn::Or(hn::And(mask, v), hn::AndNot(mask, others));
}

// 32-bit sums, as in the plain filter: for 32-bit components, and at the scalar level for all.
template <class C>
struct WideSums {
  using Component = C;
  using D = hn::ScalableTag<std::int32_t>;
  using V = hn::Vec<D>;
  static constexpr std::size_t kBytes = hn::MaxLanes(D()) * sizeof(C);
  static constexpr std::size_t kRingBytes = kBytes;
  static constexpr std::size_t kSumBytes = hn::MaxLanes(D()) * sizeof(std::int32_t);
  static constexpr std::size_t kUnits = kUnitsOfStep;
  static constexpr std::size_t kRings = 2;
  using Narrow = hn::Rebind<C, D>;

  struct Sum {
    V all;
    HWY_INLINE void Load(const std::byte* p) { all = hn::LoadU(D(), reinterpret_cast<const std::int32_t*>(p)); }
    HWY_INLINE void Store(std::byte* p) const { hn::StoreU(all, D(), reinterpret_cast<std::int32_t*>(p)); }
  };

  explicit WideSums(const BoxConstants& box) : scale(hn::Set(D(), box.scale)), frac(hn::Set(D(), box.frac)) {}

  HWY_INLINE Sum Empty() const { return {hn::Zero(D())}; }
  static HWY_INLINE V Read(const C* p) {
    if constexpr (sizeof(C) == 4) {
      return hn::LoadU(D(), p);
    } else {
      return hn::PromoteTo(D(), hn::LoadU(Narrow(), p));
    }
  }
  static HWY_INLINE void Write(V v, const Output<C>& output, C* p) {
    if (output.others != nullptr) v = Merged(Read(output.mask), v, Read(output.others));
    Put(v, p);
  }
  static HWY_INLINE void Put(V v, C* p) {
    if constexpr (sizeof(C) == 4) {
      hn::StoreU(v, D(), p);
    } else {
      hn::StoreU(hn::DemoteTo(Narrow(), v), Narrow(), p);
    }
  }
  static HWY_INLINE void Keep(V v, std::byte* p) { Put(v, reinterpret_cast<C*>(p)); }
  static HWY_INLINE V Kept(const std::byte* p) { return Read(reinterpret_cast<const C*>(p)); }

  HWY_INLINE void Add(Sum& sum, V in) const { sum.all = hn::Add(sum.all, in); }
  template <bool kFraction>
  HWY_INLINE V Step(Sum& sum, V in, V out) const {
    if constexpr (kFraction) {
      const V inner = hn::Sub(sum.all, out);
      const V ends = hn::ShiftRight<14>(hn::Mul(hn::Add(in, out), frac));
      sum.all = hn::Add(inner, in);
      return Scaled(hn::Add(inner, ends));
    } else {
      const V result = Scaled(sum.all);
      sum.all = hn::Sub(hn::Add(sum.all, in), out);
      return result;
    }
  }
  HWY_INLINE V Scaled(V sum) const { return hn::ShiftRight<14>(hn::Add(hn::Mul(sum, scale), hn::Set(D(), 8192))); }

  V scale;
  V frac;
};

#if HWY_TARGET != HWY_SCALAR

// 8-bit components as two vectors of 16-bit lanes, those of the lower and of the upper half of each 128-bit block.
// The rings hold these lanes, or packed bytes where wider rings would not fit the L1 cache.
template <class T, bool kPacked>
struct ByteLanes {
  using Component = std::uint8_t;
  using D = hn::ScalableTag<T>;
  using V = hn::Vec<D>;
  using U16 = hn::ScalableTag<std::uint16_t>;
  using U8 = hn::ScalableTag<std::uint8_t>;
  using Bytes = hn::Vec<U8>;
  static constexpr std::size_t kBytes = hn::MaxLanes(U8());
  static constexpr std::size_t kRingBytes = (kPacked ? 1 : 2) * kBytes;

  struct Pair {
    V lower;
    V upper;
  };

  static HWY_INLINE Bytes Read(const std::uint8_t* p) { return hn::LoadU(U8(), p); }
  // Values of 0 to 255.
  static HWY_INLINE void Write(const Pair& v, const Output<std::uint8_t>& output, std::uint8_t* p) {
    auto both = Packed(v);
    if (output.others != nullptr) both = Merged(hn::LoadU(U8(), output.mask), both, hn::LoadU(U8(), output.others));
    PutOut(U8(), both, output, p);
  }
  static HWY_INLINE void Keep(const Pair& v, std::byte* p) {
    if constexpr (kPacked) {
      hn::StoreU(Packed(v), U8(), reinterpret_cast<std::uint8_t*>(p));
    } else {
      StorePair(v, p);
    }
  }
  static HWY_INLINE Pair Kept(const std::byte* p) {
    if constexpr (kPacked) {
      return Unpacked(Read(reinterpret_cast<const std::uint8_t*>(p)));
    } else {
      return LoadPair(p);
    }
  }
  static HWY_INLINE void StorePair(const Pair& v, std::byte* p) {
    hn::StoreU(v.lower, D(), reinterpret_cast<T*>(p));
    hn::StoreU(v.upper, D(), reinterpret_cast<T*>(p + kBytes));
  }
  static HWY_INLINE Pair LoadPair(const std::byte* p) {
    return {hn::LoadU(D(), reinterpret_cast<const T*>(p)), hn::LoadU(D(), reinterpret_cast<const T*>(p + kBytes))};
  }

  static HWY_INLINE Pair Unpacked(Bytes v) {
    return {hn::BitCast(D(), hn::InterleaveLower(U8(), v, hn::Zero(U8()))),
            hn::BitCast(D(), hn::InterleaveUpper(U8(), v, hn::Zero(U8())))};
  }
  static HWY_INLINE const Pair& Unpacked(const Pair& v) { return v; }
  static HWY_INLINE Bytes Packed(const Pair& v) {
#if HV_X86_VECTORS
    return Bytes{SaturatedToBytes(v.lower.raw, v.upper.raw)};
#else
    return hn::ConcatEven(U8(), hn::BitCast(U8(), v.upper), hn::BitCast(U8(), v.lower));
#endif
  }
  static HWY_INLINE Pair Difference(const Pair& in, const Pair& out) {
    return {hn::Sub(in.lower, out.lower), hn::Sub(in.upper, out.upper)};
  }
  static HWY_INLINE Pair Difference(Bytes in, Bytes out) {
#if HV_X86_VECTORS
    return {V{EvenLessOddBytes(hn::InterleaveLower(U8(), in, out).raw)},
            V{EvenLessOddBytes(hn::InterleaveUpper(U8(), in, out).raw)}};
#else
    return Difference(Unpacked(in), Unpacked(out));
#endif
  }
};

// Base of the kinds with one 16-bit sum per component. Kind::Scaled turns a sum into a result, Kind::Ends weights the
// two end taps.
template <class T, bool kPacked, class Kind>
struct ByteSums : ByteLanes<T, kPacked> {
  using Lanes = ByteLanes<T, kPacked>;
  using typename Lanes::D;
  using typename Lanes::Pair;
  using typename Lanes::V;
  static constexpr std::size_t kSumBytes = 2 * Lanes::kBytes;
  static constexpr std::size_t kUnits = kUnitsOfStep;
  static constexpr std::size_t kRings = 2;

  struct Sum {
    Pair lanes;
    HWY_INLINE void Load(const std::byte* p) { lanes = Lanes::LoadPair(p); }
    HWY_INLINE void Store(std::byte* p) const { Lanes::StorePair(lanes, p); }
  };

  HWY_INLINE Sum Empty() const { return {{hn::Zero(D()), hn::Zero(D())}}; }
  // `in` is bytes or lanes.
  template <class In>
  HWY_INLINE void Add(Sum& sum, const In& in) const {
    const Pair lanes = Lanes::Unpacked(in);
    sum.lanes = {hn::Add(sum.lanes.lower, lanes.lower), hn::Add(sum.lanes.upper, lanes.upper)};
  }
  template <bool kFraction, class In>
  HWY_INLINE Pair Step(Sum& sum, const In& in, const In& out) const {
    if constexpr (kFraction) {
      const Pair newest = Lanes::Unpacked(in);
      const Pair oldest = Lanes::Unpacked(out);
      return {Weighted(sum.lanes.lower, newest.lower, oldest.lower),
              Weighted(sum.lanes.upper, newest.upper, oldest.upper)};
    } else {
      const Kind& kind = static_cast<const Kind&>(*this);
      const Pair result{kind.Scaled(sum.lanes.lower), kind.Scaled(sum.lanes.upper)};
      const Pair more = Lanes::Difference(in, out);
      sum.lanes = {hn::Add(sum.lanes.lower, more.lower), hn::Add(sum.lanes.upper, more.upper)};
      return result;
    }
  }

 private:
  HWY_INLINE V Weighted(V& sum, V in, V out) const {
    const Kind& kind = static_cast<const Kind&>(*this);
    const V inner = hn::Sub(sum, out);
    sum = hn::Add(inner, in);
    return kind.Scaled(hn::Add(inner, kind.Ends(hn::Add(in, out))));
  }
};

// Boxes of up to 126 taps: sums of at most 127 * 255 + 1, which 16 signed bits hold. (S * scale + 8192) >> 14 is
// the rounding high multiply by 2 * scale, and ((in + out) * frac) >> 14 the high multiply by 4 * frac; both
// factors fit 16 bits for a scale below 1.
template <bool kPacked>
struct SmallSums : ByteSums<std::int16_t, kPacked, SmallSums<kPacked>> {
  using Lanes = ByteLanes<std::int16_t, kPacked>;
  using typename Lanes::D;
  using typename Lanes::U16;
  using typename Lanes::V;

  static bool Fits(const BoxConstants& box) { return box.r <= 62; }
  explicit SmallSums(const BoxConstants& box)
      : scale(hn::Set(D(), static_cast<std::int16_t>(2 * box.scale))),
        frac(hn::Set(U16(), static_cast<std::uint16_t>(4 * box.frac))) {}

  HWY_INLINE V Scaled(V sum) const { return hn::MulFixedPoint15(sum, scale); }
  HWY_INLINE V Ends(V both) const { return hn::BitCast(D(), hn::MulHigh(hn::BitCast(U16(), both), frac)); }

  V scale;
  hn::Vec<U16> frac;
};

// Boxes of up to 257 taps: sums of at most 257 * 255 = 65535, which 16 unsigned bits hold. The high multiply by
// 8 * scale is (S * scale) >> 13; the rounding average with 0 is the last shift.
template <bool kPacked>
struct MediumSums : ByteSums<std::uint16_t, kPacked, MediumSums<kPacked>> {
  using Lanes = ByteLanes<std::uint16_t, kPacked>;
  using typename Lanes::D;
  using typename Lanes::U16;
  using typename Lanes::V;

  static bool Fits(const BoxConstants& box) { return box.r <= 127 && box.scale < 8192; }
  explicit MediumSums(const BoxConstants& box)
      : scale(hn::Set(D(), static_cast<std::uint16_t>(8 * box.scale))),
        frac(hn::Set(D(), static_cast<std::uint16_t>(4 * box.frac))) {}

  HWY_INLINE V Scaled(V sum) const { return hn::AverageRound(hn::MulHigh(sum, scale), hn::Zero(D())); }
  HWY_INLINE V Ends(V both) const { return hn::MulHigh(both, frac); }

  V scale;
  V frac;
};

// Larger boxes, of a scale of at most 63. The sum is kept as sum * scale + 8192, its low 14 bits in one lane and the
// bits above, which are the result, in another. A step changes the low part by at most 63 * 255 = 16065, so that the
// carry is at most one.
struct SplitSums : ByteLanes<std::int16_t, true> {
  static constexpr std::size_t kSumBytes = 4 * kBytes;
  static constexpr std::size_t kUnits = kUnitsOfStep;
  static constexpr std::size_t kRings = 2;

  struct Sum {
    Pair low;
    Pair high;
    HWY_INLINE void Load(const std::byte* p) {
      low = LoadPair(p);
      high = LoadPair(p + 2 * kBytes);
    }
    HWY_INLINE void Store(std::byte* p) const {
      StorePair(low, p);
      StorePair(high, p + 2 * kBytes);
    }
  };

  explicit SplitSums(const BoxConstants& box)
      : scale(hn::Set(D(), static_cast<std::int16_t>(box.scale))),
        frac(hn::Set(U16(), static_cast<std::uint16_t>(4 * box.frac))) {}

  HWY_INLINE Sum Empty() const {
    const V half = hn::Set(D(), 8192);
    return {{half, half}, {hn::Zero(D()), hn::Zero(D())}};
  }
  template <class In>
  HWY_INLINE void Add(Sum& sum, const In& in) const {
    Move(sum, Unpacked(in));
  }
  template <bool kFraction, class In>
  HWY_INLINE Pair Step(Sum& sum, const In& in, const In& out) const {
    Pair result = sum.high;
    if constexpr (kFraction) {
      const Pair newest = Unpacked(in);
      const Pair oldest = Unpacked(out);
      result = {Weighted(sum.low.lower, sum.high.lower, newest.lower, oldest.lower),
                Weighted(sum.low.upper, sum.high.upper, newest.upper, oldest.upper)};
    }
    Move(sum, Difference(in, out));
    return result;
  }

 private:
  HWY_INLINE void Move(V& low, V& high, V by) const {
    const V moved = hn::Add(low, hn::Mul(by, scale));
    high = hn::Add(high, hn::ShiftRight<14>(moved));
    low = hn::And(moved, hn::Set(D(), 0x3FFF));
  }
  HWY_INLINE void Move(Sum& sum, const Pair& by) const {
    Move(sum.low.lower, sum.high.lower, by.lower);
    Move(sum.low.upper, sum.high.upper, by.upper);
  }
  HWY_INLINE V Weighted(V low, V high, V in, V out) const {
    // ends - out lies in -255..255.
    const V ends = hn::BitCast(D(), hn::MulHigh(hn::BitCast(U16(), hn::Add(in, out)), frac));
    return hn::Add(high, hn::ShiftRight<14>(hn::Add(low, hn::Mul(hn::Sub(ends, out), scale))));
  }

  V scale;
  hn::Vec<U16> frac;
};

// 16-bit components. The sum is kept as kTimes * (sum * scale + 8192) in 32 bits; one multiply-add of 16-bit pairs adds
// `in` and subtracts `out`. With kTimes 4 a result is the upper half of its lane; scales above 8191 only allow 2.
// Results of the two halves of a 128-bit block come interleaved; after three boxes they are in order again.
template <std::int32_t kTimes>
struct ScaledSums {
  using Component = std::int16_t;
  using D = hn::ScalableTag<std::int16_t>;
  using D32 = hn::ScalableTag<std::int32_t>;
  using V = hn::Vec<D>;
  using V32 = hn::Vec<D32>;
  static constexpr std::size_t kBytes = hn::MaxLanes(D()) * sizeof(std::int16_t);
  static constexpr std::size_t kRingBytes = kBytes;
  static constexpr std::size_t kSumBytes = 2 * kBytes;
  static constexpr std::size_t kUnits = kUnitsOfStep;
  static constexpr std::size_t kRings = 2;

  struct Sum {
    V32 lower;
    V32 upper;
    HWY_INLINE void Load(const std::byte* p) {
      lower = hn::LoadU(D32(), reinterpret_cast<const std::int32_t*>(p));
      upper = hn::LoadU(D32(), reinterpret_cast<const std::int32_t*>(p + kBytes));
    }
    HWY_INLINE void Store(std::byte* p) const {
      hn::StoreU(lower, D32(), reinterpret_cast<std::int32_t*>(p));
      hn::StoreU(upper, D32(), reinterpret_cast<std::int32_t*>(p + kBytes));
    }
  };

  static bool Fits(const BoxConstants& box) { return kTimes * box.scale <= 32767; }
  explicit ScaledSums(const BoxConstants& box)
      : scales(Pairs(kTimes * box.scale, -kTimes * box.scale)),
        scale(Pairs(0, kTimes * box.scale)),
        ends(Pairs(2 * box.frac, 2 * box.frac - 32768)) {}

  HWY_INLINE Sum Empty() const {
    const V32 half = hn::Set(D32(), kTimes * 8192);
    return {half, half};
  }
  static HWY_INLINE V Read(const std::int16_t* p) { return hn::LoadU(D(), p); }
  static HWY_INLINE void Write(V v, const Output<std::int16_t>& output, std::int16_t* p) {
    if (output.others != nullptr) v = Merged(Read(output.mask), v, Read(output.others));
    PutOut(D(), v, output, p);
  }
  static HWY_INLINE void Keep(V v, std::byte* p) { hn::StoreU(v, D(), reinterpret_cast<std::int16_t*>(p)); }
  static HWY_INLINE V Kept(const std::byte* p) { return Read(reinterpret_cast<const std::int16_t*>(p)); }

  HWY_INLINE void Add(Sum& sum, V in) const {
    const V none = hn::Zero(D());
    sum.lower = AddProducts(sum.lower, hn::InterleaveLower(D(), in, none), scales);
    sum.upper = AddProducts(sum.upper, hn::InterleaveUpper(D(), in, none), scales);
  }
  template <bool kFraction>
  HWY_INLINE V Step(Sum& sum, V in, V out) const {
    const V lower = hn::InterleaveLower(D(), in, out);
    const V upper = hn::InterleaveUpper(D(), in, out);
    const V32 a = Result<kFraction>(sum.lower, lower);
    const V32 b = Result<kFraction>(sum.upper, upper);
    sum.lower = AddProducts(sum.lower, lower, scales);
    sum.upper = AddProducts(sum.upper, upper, scales);
    return Interleaved(a, b);
  }

 private:
  // `even` in even lanes, `odd` in odd ones.
  static HWY_INLINE V Pairs(std::int32_t even, std::int32_t odd) {
    const auto both = static_cast<std::int32_t>((static_cast<std::uint32_t>(odd) << 16) |
                                                (static_cast<std::uint32_t>(even) & 0xFFFF));
    return hn::BitCast(D(), hn::Set(D32(), both));
  }

  // The sum whose upper bits are the result.
  template <bool kFraction>
  HWY_INLINE V32 Result(V32 sum, V both) const {
    if constexpr (kFraction) {
      // The upper half of twice these products is ((in + out) * frac >> 14) - out, which 16 bits hold (see
      // BoxSweepArithmetic in the tests). `scale` has 0 for the lower half.
      const V32 products = AddProducts(hn::Zero(D32()), both, ends);
      sum = AddProducts(sum, hn::BitCast(D(), hn::Add(products, products)), scale);
    }
    return sum;
  }

  // The results of the lower sums in even lanes, of the upper sums in odd lanes.
  static HWY_INLINE V Interleaved(V32 lower, V32 upper) {
    if constexpr (kTimes == 4) {
      return hn::OddEven(hn::BitCast(D(), upper), hn::BitCast(D(), hn::ShiftRight<16>(lower)));
    } else {
      return hn::OddEven(hn::BitCast(D(), hn::Add(upper, upper)), hn::BitCast(D(), hn::ShiftRight<15>(lower)));
    }
  }

  // sum + a.even * b.even + a.odd * b.odd, for each pair of lanes.
#if HV_X86_VECTORS
  static HWY_INLINE V32 AddProducts(V32 sum, V a, V b) {
    V32 unused = hn::Zero(D32());
    return hn::ReorderWidenMulAccumulate(D32(), a, b, sum, unused);
  }
#else
  static HWY_INLINE V32 AddProducts(V32 sum, V a, V b) {
    const auto even = [](V v) { return hn::ShiftRight<16>(hn::ShiftLeft<16>(hn::BitCast(D32(), v))); };
    const auto odd = [](V v) { return hn::ShiftRight<16>(hn::BitCast(D32(), v)); };
    return hn::Add(sum, hn::Add(hn::Mul(even(a), even(b)), hn::Mul(odd(a), odd(b))));
  }
#endif

  V scales;
  V scale;
  V ends;
};

#endif  // HWY_TARGET != HWY_SCALAR

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#endif  // include guard
