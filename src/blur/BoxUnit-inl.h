// The running sums of the three boxes of a pass over one vector of components, step by step. Compiled once for each
// instruction set.
#if defined(VBLUR_BLUR_BOXUNIT_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VBLUR_BLUR_BOXUNIT_INL_H
#undef VBLUR_BLUR_BOXUNIT_INL_H
#else
#define VBLUR_BLUR_BOXUNIT_INL_H
#endif

#include <cstddef>
#include <cstdint>

#include <hwy/highway.h>

#include "blur/BoxConstants.h"
#include "blur/BoxSums-inl.h"
#include "blur/BoxSweep.h"

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

// Warm-up stage of the three boxes: their sums fill one after the other.
enum Stage { kFillFirst, kFillSecond, kFillThird, kProduce };

// The sums of the three boxes over one vector of components.
template <class Sums>
struct Unit {
  using C = typename Sums::Component;
  static constexpr std::size_t kBytes = Sums::kBytes;
  static constexpr std::size_t kRingBytes = Sums::kRingBytes;
  static constexpr std::size_t kSlotBytes = Sums::kRings * kRingBytes;
  static constexpr bool kKeepsInput = Sums::kRings == 3;

  HWY_INLINE void Begin(const Sums& sums) { first = second = third = sums.Empty(); }
  HWY_INLINE void Load(const std::byte* kept) {
    first.Load(kept);
    second.Load(kept + Sums::kSumBytes);
    third.Load(kept + 2 * Sums::kSumBytes);
  }
  HWY_INLINE void Store(std::byte* kept) const {
    first.Store(kept);
    second.Store(kept + Sums::kSumBytes);
    third.Store(kept + 2 * Sums::kSumBytes);
  }

  // A slot of the rings holds the results of the first two boxes, and the input where it is kept, from `taps` steps
  // ago, and then the newest.
  template <bool kFraction, Stage kStage>
  HWY_INLINE void Step(const Sums& sums, const C* entering, const C* leaving, std::byte* slot, const Output<C>& output,
                       C* result) {
    const auto in = sums.Read(entering);
    if constexpr (kStage == kFillFirst) {
      if constexpr (kKeepsInput) Sums::Keep(in, slot + 2 * kRingBytes);
      sums.Add(first, in);
    } else {
      const auto oldIn = left(sums, leaving, slot);
      if constexpr (kKeepsInput) Sums::Keep(in, slot + 2 * kRingBytes);
      const auto once = sums.template Step<kFraction>(first, in, oldIn);
      if constexpr (kStage == kFillSecond) {
        Sums::Keep(once, slot);
        sums.Add(second, once);
      } else {
        const auto oldOnce = Sums::Kept(slot);
        Sums::Keep(once, slot);
        const auto twice = sums.template Step<kFraction>(second, once, oldOnce);
        if constexpr (kStage == kFillThird) {
          Sums::Keep(twice, slot + kRingBytes);
          sums.Add(third, twice);
        } else {
          const auto oldTwice = Sums::Kept(slot + kRingBytes);
          Sums::Keep(twice, slot + kRingBytes);
          sums.Write(sums.template Step<kFraction>(third, twice, oldTwice), output, result);
        }
      }
    }
  }

  typename Sums::Sum first;
  typename Sums::Sum second;
  typename Sums::Sum third;

 private:
  static HWY_INLINE auto left(const Sums& sums, const C* leaving, const std::byte* slot) {
    if constexpr (kKeepsInput) {
      return Sums::Kept(slot + 2 * kRingBytes);
    } else {
      return sums.Read(leaving);
    }
  }
};

// Whether the rings hold packed 8-bit components. With a fraction, packing pays only where rings of 16-bit lanes and
// the rows beside them would not fit the L1 cache; without one, it always pays at 512 bits.
HWY_INLINE bool Packs(const BoxConstants& box, std::size_t bytesOfRow) {
  constexpr std::int64_t kCacheBytes = 48 << 10;
  constexpr std::int64_t kRowsBeside = 192;
  constexpr std::int64_t kPlainRingBytes = HWY_TARGET <= HWY_AVX3 ? 0 : 16 << 10;
  const auto rowBytes = static_cast<std::int64_t>(bytesOfRow);
  const std::int64_t ringBytes = BoxSweep::taps(box) * 4 * rowBytes;
  return box.d == 0 ? ringBytes > kPlainRingBytes : ringBytes + kRowsBeside * rowBytes > kCacheBytes;
}

template <class Sums>
struct SumsKind {
  using Type = Sums;
};

// Calls use(SumsKind<Sums>()) with the sums for components of a box: those of the narrowest lanes that hold them. Rows
// of rowBytes say whether rings of 8-bit components are packed, unless they always are.
template <class Component, bool kAlwaysPacks, class Use>
HWY_INLINE auto WithSums([[maybe_unused]] const BoxConstants& box, [[maybe_unused]] std::size_t rowBytes, Use use) {
#if HWY_TARGET != HWY_SCALAR
  if constexpr (sizeof(Component) == 1) {
    if (SmallSums<true>::Fits(box)) {
      if constexpr (!kAlwaysPacks) {
        if (!Packs(box, rowBytes)) return use(SumsKind<SmallSums<false>>());
      }
      return use(SumsKind<SmallSums<true>>());
    }
    if (MediumSums<true>::Fits(box)) return use(SumsKind<MediumSums<true>>());
    return use(SumsKind<SplitSums>());
  } else if constexpr (sizeof(Component) == 2) {
    return ScaledSums<4>::Fits(box) ? use(SumsKind<ScaledSums<4>>()) : use(SumsKind<ScaledSums<2>>());
  } else
#endif
  {
    return use(SumsKind<WideSums<Component>>());
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#endif  // include guard
