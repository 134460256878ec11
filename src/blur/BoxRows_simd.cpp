#include <cstring>

#include <hwy/cache_control.h>

#include "blur/BoxRows.h"
// Vector types of a size that only the machine knows cannot be held in loops of several.
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "blur/BoxRows_simd.cpp"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// How many rows ahead of the sums the memory is asked for, as far as there are any. Rows of a picture lie
// pages apart, where the machine does not look ahead by itself.
constexpr std::int64_t kAhead = 24;

template <class C>
HWY_INLINE void AskFor(const C* row, std::size_t lanes) {
  for (std::size_t lane = 0; lane < lanes; lane += 64 / sizeof(C))
    hwy::Prefetch(row + lane);
  // One line more where the row does not begin with one.
  hwy::Prefetch(row + lanes - 1);
}

// 8-bit components, boxes of up to 126 taps: sums of at most 127 * 255 + 1, which 16 signed bits hold.
// (S * scale + 8192) >> 14 is the rounding high multiply by 2 * scale, and ((in + out) * frac) >> 14 the high
// multiply by 4 * frac; both factors fit 16 bits for a scale below 1.
struct SmallSums {
  using D = hn::ScalableTag<std::int16_t>;
  using U = hn::RebindToUnsigned<D>;

  static bool Fits(const BoxConstants& box) { return box.r <= 62 && box.scale < 16384; }
  explicit SmallSums(const BoxConstants& box)
      : scale(hn::Set(D(), static_cast<std::int16_t>(2 * box.scale))),
        frac(hn::Set(U(), static_cast<std::uint16_t>(4 * box.frac))) {}

  hn::Vec<D> Scaled(hn::Vec<D> sum) const { return hn::MulFixedPoint15(sum, scale); }
  hn::Vec<D> Ends(hn::Vec<D> both) const { return hn::BitCast(D(), hn::MulHigh(hn::BitCast(U(), both), frac)); }
  static hn::Vec<D> Load(const std::uint8_t* p) {
    return hn::PromoteTo(D(), hn::LoadU(hn::Rebind<std::uint8_t, D>(), p));
  }
  static void Store(hn::Vec<D> v, std::uint8_t* p) {
    const hn::Rebind<std::uint8_t, D> d8;
    hn::StoreU(hn::DemoteTo(d8, v), d8, p);
  }

  hn::Vec<D> scale;
  hn::Vec<U> frac;
};

// 8-bit components, boxes of up to 257 taps: sums of at most 257 * 255 = 65535, which 16 unsigned bits hold.
// The high multiply by 8 * scale gives (S * scale) >> 13, and the rounding average with 0 the last bit.
struct MediumSums {
  using D = hn::ScalableTag<std::uint16_t>;

  static bool Fits(const BoxConstants& box) { return box.r <= 127 && box.scale < 8192; }
  explicit MediumSums(const BoxConstants& box)
      : scale(hn::Set(D(), static_cast<std::uint16_t>(8 * box.scale))),
        frac(hn::Set(D(), static_cast<std::uint16_t>(4 * box.frac))) {}

  hn::Vec<D> Scaled(hn::Vec<D> sum) const { return hn::AverageRound(hn::MulHigh(sum, scale), hn::Zero(D())); }
  hn::Vec<D> Ends(hn::Vec<D> both) const { return hn::MulHigh(both, frac); }
  static hn::Vec<D> Load(const std::uint8_t* p) {
    return hn::PromoteTo(D(), hn::LoadU(hn::Rebind<std::uint8_t, D>(), p));
  }
  static void Store(hn::Vec<D> v, std::uint8_t* p) {
    // At most 255, so that signed lanes hold them as well.
    const hn::Rebind<std::uint8_t, D> d8;
    hn::StoreU(hn::DemoteTo(d8, hn::BitCast(hn::RebindToSigned<D>(), v)), d8, p);
  }

  hn::Vec<D> scale;
  hn::Vec<D> frac;
};

// All others: 32-bit sums, as the plain filter has them, with the bounds that it states.
template <class C>
struct WideSums {
  using D = hn::ScalableTag<std::int32_t>;

  explicit WideSums(const BoxConstants& box) : scale(hn::Set(D(), box.scale)), frac(hn::Set(D(), box.frac)) {}

  hn::Vec<D> Scaled(hn::Vec<D> sum) const {
    return hn::ShiftRight<14>(hn::Add(hn::Mul(sum, scale), hn::Set(D(), 8192)));
  }
  hn::Vec<D> Ends(hn::Vec<D> both) const { return hn::ShiftRight<14>(hn::Mul(both, frac)); }
  static hn::Vec<D> Load(const C* p) { return hn::PromoteTo(D(), hn::LoadU(hn::Rebind<C, D>(), p)); }
  static void Store(hn::Vec<D> v, C* p) {
    const hn::Rebind<C, D> narrow;
    hn::StoreU(hn::DemoteTo(narrow, v), narrow, p);
  }

  hn::Vec<D> scale;
  hn::Vec<D> frac;
};

// One step of one vector of lanes.
template <bool kFraction, class Sums, class V, class C>
HWY_INLINE void Step(const Sums& sums, V& sum, const C* entering, const C* leaving, C* result) {
  const V in = Sums::Load(entering);
  const V out = Sums::Load(leaving);
  if constexpr (kFraction) {
    const V inner = hn::Sub(sum, out);
    Sums::Store(sums.Scaled(hn::Add(inner, sums.Ends(hn::Add(in, out)))), result);
    sum = hn::Add(inner, in);
  } else {
    Sums::Store(sums.Scaled(sum), result);
    sum = hn::Sub(hn::Add(sum, in), out);
  }
}

// Four vectors of lanes along all rows.
template <bool kFraction, class Sums, class C>
HWY_INLINE void FourVectors(const Sums& sums, const BoxConstants& box, BoxRowsSums& kept, std::int64_t count,
                            std::int64_t known, const C* const* in, C* const* out, std::size_t lane) {
  const typename Sums::D d;
  const std::size_t n = hn::Lanes(d);
  auto* const keptLanes = reinterpret_cast<hn::TFromD<typename Sums::D>*>(kept.lanes) + lane;
  const std::int64_t lead = 2 * static_cast<std::int64_t>(box.r) + box.d + 1;
  auto sum0 = hn::Zero(d);
  auto sum1 = hn::Zero(d);
  auto sum2 = hn::Zero(d);
  auto sum3 = hn::Zero(d);
  if (kept.begun) {
    sum0 = hn::LoadU(d, keptLanes);
    sum1 = hn::LoadU(d, keptLanes + n);
    sum2 = hn::LoadU(d, keptLanes + 2 * n);
    sum3 = hn::LoadU(d, keptLanes + 3 * n);
  }
  for (std::int64_t k = 0; k < (kept.begun ? 0 : lead); ++k) {
    const C* p = in[k] + lane;
    sum0 = hn::Add(sum0, Sums::Load(p));
    sum1 = hn::Add(sum1, Sums::Load(p + n));
    sum2 = hn::Add(sum2, Sums::Load(p + 2 * n));
    sum3 = hn::Add(sum3, Sums::Load(p + 3 * n));
  }
  for (std::int64_t i = 0; i < count; ++i) {
    const C* entering = in[i + lead] + lane;
    const C* leaving = in[i] + lane;
    C* result = out[i] + lane;
    AskFor(in[HWY_MIN(i + lead + kAhead, known - 1)] + lane, 4 * n);
    Step<kFraction>(sums, sum0, entering, leaving, result);
    Step<kFraction>(sums, sum1, entering + n, leaving + n, result + n);
    Step<kFraction>(sums, sum2, entering + 2 * n, leaving + 2 * n, result + 2 * n);
    Step<kFraction>(sums, sum3, entering + 3 * n, leaving + 3 * n, result + 3 * n);
  }
  hn::StoreU(sum0, d, keptLanes);
  hn::StoreU(sum1, d, keptLanes + n);
  hn::StoreU(sum2, d, keptLanes + 2 * n);
  hn::StoreU(sum3, d, keptLanes + 3 * n);
}

template <class Sums, class C>
void RunSums(const BoxConstants& box, BoxRowsSums& kept, std::int64_t count, std::int64_t known, const C* const* in,
             C* const* out) {
  const Sums sums(box);
  const std::size_t step = 4 * hn::Lanes(typename Sums::D());
  for (std::size_t lane = 0; lane < kRowBytes / sizeof(C); lane += step) {
    if (box.d != 0) {
      FourVectors<true>(sums, box, kept, count, known, in, out, lane);
    } else {
      FourVectors<false>(sums, box, kept, count, known, in, out, lane);
    }
  }
  kept.begun = true;
}

void BoxRows8(const BoxConstants& box, BoxRowsSums& kept, std::int64_t count, std::int64_t known,
              const std::uint8_t* const* in, std::uint8_t* const* out) {
  if (SmallSums::Fits(box)) return RunSums<SmallSums>(box, kept, count, known, in, out);
  if (MediumSums::Fits(box)) return RunSums<MediumSums>(box, kept, count, known, in, out);
  RunSums<WideSums<std::uint8_t>>(box, kept, count, known, in, out);
}

void BoxRows16(const BoxConstants& box, BoxRowsSums& kept, std::int64_t count, std::int64_t known,
               const std::int16_t* const* in, std::int16_t* const* out) {
  RunSums<WideSums<std::int16_t>>(box, kept, count, known, in, out);
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vblur {
namespace {

HWY_EXPORT(BoxRows8);
HWY_EXPORT(BoxRows16);

// A box of no width and full weight gives back what it is given.
template <class C>
bool copiedRows(const BoxConstants& box, std::int64_t count, const C* const* in, C* const* out) {
  if (box.r != 0 || box.d != 0) return false;
  for (std::int64_t i = 0; i < count; ++i)
    std::memcpy(out[i], in[i], kRowBytes);
  return true;
}

}  // namespace

void boxRows(const BoxConstants& box, BoxRowsSums& sums, std::int64_t count, std::int64_t known,
             const std::uint8_t* const* in, std::uint8_t* const* out) {
  if (!copiedRows(box, count, in, out)) HWY_DYNAMIC_DISPATCH(BoxRows8)(box, sums, count, known, in, out);
}

void boxRows(const BoxConstants& box, BoxRowsSums& sums, std::int64_t count, std::int64_t known,
             const std::int16_t* const* in, std::int16_t* const* out) {
  if (!copiedRows(box, count, in, out)) HWY_DYNAMIC_DISPATCH(BoxRows16)(box, sums, count, known, in, out);
}

}  // namespace vblur
#endif  // HWY_ONCE
