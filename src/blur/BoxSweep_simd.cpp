// AVX3_DL multiplies and adds 16-bit pairs in one instruction, which sums of 16-bit components gain from.
#define HWY_WANT_AVX3_DL

#include "blur/BoxSweep.h"

#include <algorithm>
#include <cstring>

#include <hwy/cache_control.h>

#include "image/HvKernel.h"
#include "image/VectorTargets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "blur/BoxSweep_simd.cpp"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "blur/BoxSums-inl.h"
#include "blur/BoxUnit-inl.h"
#include "blur/ExactSums-inl.h"

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

// Prefetches for one step.
HWY_INLINE void PrefetchLines(const std::byte* place, std::size_t lines) {
  hwy::Prefetch(place);
  if (lines == 2) hwy::Prefetch(place + 64);
}

// The rows, ring and mask of one column of vectors; `lane` is the column's first component in the rows.
template <class C>
struct Column {
  const C* const* in;
  C* const* out;
  std::size_t lane;
  std::int64_t taps;
  std::int64_t behind;
  std::byte* ring;
  bool merges;
  const C* mask;
  const SweepRows& rows;
};

// Steps j to `to` - 1 of one stage, over kUnits vectors side by side.
template <bool kFraction, Stage kStage, class Sums, std::size_t kUnits>
HWY_INLINE void Steps(const Sums& sums, Unit<Sums> (&units)[kUnits], const Column<typename Sums::Component>& column,
                      std::int64_t& j, std::int64_t to, std::byte*& slot) {
  using C = typename Sums::Component;
  constexpr std::size_t kLanes = Sums::kBytes / sizeof(C);
  constexpr std::size_t kSlotBytes = kUnits * Unit<Sums>::kSlotBytes;
  const std::byte* const ringEnd = column.ring + static_cast<std::size_t>(column.taps) * kSlotBytes;
  const std::byte* const* const ahead = column.lane == 0 ? column.rows.ahead : nullptr;
  for (; j < to; ++j) {
    if (ahead != nullptr) PrefetchLines(ahead[j - column.rows.from], column.rows.aheadLines);
    const C* entering = column.in[j] + column.lane;
    const bool readsLeaving = kStage != kFillFirst && !Unit<Sums>::kKeepsInput;
    const C* leaving = readsLeaving ? column.in[j - column.taps] + column.lane : entering;
    C* result = kStage == kProduce ? column.out[j - 3 * column.taps] + column.lane : nullptr;
    const bool merges = kStage == kProduce && column.merges;
    const C* others = merges ? column.in[j - column.behind] + column.lane : nullptr;
    units[0].template Step<kFraction, kStage>(sums, entering, leaving, slot, {others, column.mask, column.rows.streams},
                                              result);
    if constexpr (kUnits == 2) {
      units[1].template Step<kFraction, kStage>(
          sums, entering + kLanes, leaving + kLanes, slot + Unit<Sums>::kSlotBytes,
          {merges ? others + kLanes : nullptr, column.mask, column.rows.streams}, result + kLanes);
    }
    if constexpr (kStage != kFillFirst || Unit<Sums>::kKeepsInput) {
      slot += kSlotBytes;
      if (slot == ringEnd) slot = column.ring;
    }
  }
}

// All steps of `rows` over one column; returns the next slot of the ring.
template <bool kFraction, std::size_t kUnits, class Sums>
HWY_INLINE std::int64_t Columns(const Sums& sums, BoxSweep::State& state, const SweepRows& rows,
                                const typename Sums::Component* const* in, typename Sums::Component* const* out,
                                std::size_t at) {
  using C = typename Sums::Component;
  constexpr std::size_t kSlotBytes = kUnits * Unit<Sums>::kSlotBytes;
  const std::int64_t taps = state.taps;
  std::byte* const ring = state.rings + at / (kUnits * Sums::kBytes) * static_cast<std::size_t>(taps) * kSlotBytes;
  const Column<C> column{in,           out,  at / sizeof(C), taps,
                         state.behind, ring, state.merges,   reinterpret_cast<const C*>(state.mask + at % kSweepUnit),
                         rows};
  std::byte* slot = ring + static_cast<std::size_t>(state.slot) * kSlotBytes;
  std::byte* const kept = state.sums + at / Sums::kBytes * 3 * Sums::kSumBytes;
  Unit<Sums> units[kUnits];
  for (std::size_t u = 0; u < kUnits; ++u) {
    if (rows.from == 0) {
      units[u].Begin(sums);
    } else {
      units[u].Load(kept + u * 3 * Sums::kSumBytes);
    }
  }
  std::int64_t j = rows.from;
  Steps<kFraction, kFillFirst>(sums, units, column, j, HWY_MIN(rows.to, taps), slot);
  Steps<kFraction, kFillSecond>(sums, units, column, j, HWY_MIN(rows.to, 2 * taps), slot);
  Steps<kFraction, kFillThird>(sums, units, column, j, HWY_MIN(rows.to, 3 * taps), slot);
  Steps<kFraction, kProduce>(sums, units, column, j, rows.to, slot);
  for (std::size_t u = 0; u < kUnits; ++u)
    units[u].Store(kept + u * 3 * Sums::kSumBytes);
  return (slot - ring) / static_cast<std::int64_t>(kSlotBytes);
}

template <bool kFraction, class Sums>
HWY_INLINE void AllColumns(const Sums& sums, BoxSweep::State& state, const SweepRows& rows,
                           const typename Sums::Component* const* in, typename Sums::Component* const* out) {
  std::int64_t slot = 0;
  constexpr std::size_t kStepBytes = Sums::kUnits * Sums::kBytes;
  if (kSweepUnit % kStepBytes == 0 || state.rowBytes % kStepBytes == 0) {
    for (std::size_t at = 0; at < state.rowBytes; at += kStepBytes)
      slot = Columns<kFraction, Sums::kUnits>(sums, state, rows, in, out, at);
  } else if constexpr (kSweepUnit % kStepBytes != 0) {
    for (std::size_t at = 0; at < state.rowBytes; at += Sums::kBytes)
      slot = Columns<kFraction, 1>(sums, state, rows, in, out, at);
  }
  state.slot = slot;
}

template <class Sums, class Box>
void SweepSums(const Box& box, BoxSweep::State& state, const SweepRows& rows, const typename Sums::Component* const* in,
               typename Sums::Component* const* out) {
  const Sums sums(box);
  if (box.d == 0) {
    AllColumns<false>(sums, state, rows, in, out);
  } else {
    AllColumns<true>(sums, state, rows, in, out);
  }
}

template <class C>
HWY_INLINE void SweepIntegers(const BoxConstants& box, BoxSweep::State& state, const SweepRows& rows,
                              const C* const* in, C* const* out) {
  WithSums<C, false>(box, state.rowBytes,
                     [&](auto kind) { SweepSums<typename decltype(kind)::Type>(box, state, rows, in, out); });
}

void Sweep8(const BoxConstants& box, BoxSweep::State& state, const SweepRows& rows, const std::uint8_t* const* in,
            std::uint8_t* const* out) {
  HvEnterKernel<"boxSweep 8", HWY_TARGETS>(HWY_TARGET);
  SweepIntegers(box, state, rows, in, out);
}

void Sweep16(const BoxConstants& box, BoxSweep::State& state, const SweepRows& rows, const std::int16_t* const* in,
             std::int16_t* const* out) {
  HvEnterKernel<"boxSweep 16", HWY_TARGETS>(HWY_TARGET);
  SweepIntegers(box, state, rows, in, out);
}

void Sweep32(const BoxConstants& box, BoxSweep::State& state, const SweepRows& rows, const std::int32_t* const* in,
             std::int32_t* const* out) {
  HvEnterKernel<"boxSweep 32", HWY_TARGETS>(HWY_TARGET);
  SweepIntegers(box, state, rows, in, out);
}

void SweepFloats(const ExactBox& box, BoxSweep::State& state, const SweepRows& rows, const float* const* in,
                 float* const* out) {
  HvEnterKernel<"boxSweep float", HWY_TARGETS>(HWY_TARGET);
  if constexpr (kSumsInDoubles) {
    if (rows.from == 0) state.inDoubles = !rows.large;
    if (!rows.large) return SweepSums<DoubleSums>(box, state, rows, in, out);
    if (state.inDoubles) {
      IntoIntegers(box, state.sums, sizeof(state.sums));
      IntoIntegers(box, state.rings, state.ringBytes);
      state.inDoubles = false;
    }
  }
  SweepSums<ExactSums>(box, state, rows, in, out);
}

bool FillsLines() {
  return kUnitsOfStep * hn::MaxLanes(hn::ScalableTag<std::uint8_t>()) >= kSweepUnit;
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vblur {
namespace {

HWY_EXPORT(Sweep8);
HWY_EXPORT(Sweep16);
HWY_EXPORT(Sweep32);
HWY_EXPORT(SweepFloats);
HWY_EXPORT(FillsLines);

// Rings of `row` bytes a slot.
std::size_t ringBytes(const BoxShape& box, std::size_t rings, std::size_t row) {
  const std::size_t bytes = rings * row * static_cast<std::size_t>(BoxSweep::taps(box));
  return (bytes + kSweepUnit - 1) / kSweepUnit * kSweepUnit;
}

}  // namespace

BoxSweep::BoxSweep(const BoxShape& shape, std::size_t rowBytes, std::size_t ringBytes)
    : note_(ringBytes),
      rings_(static_cast<std::byte*>(::operator new (ringBytes, std::align_val_t{kSweepUnit}, std::nothrow))) {
  state_.rings = rings_.get();
  state_.ringBytes = ringBytes;
  state_.rowBytes = rowBytes;
  state_.taps = taps(shape);
  state_.behind = behind(shape);
}

// 8-bit components may be kept in lanes of 16 bits.
BoxSweep::BoxSweep(const BoxConstants& box, std::size_t rowBytes, std::size_t componentBytes)
    : BoxSweep(static_cast<const BoxShape&>(box), rowBytes,
               ringBytes(box, 2, componentBytes == 1 ? 2 * rowBytes : rowBytes)) {
  box_ = box;
}

// Floats are kept in lanes of 64 bits, those of the input too.
BoxSweep::BoxSweep(const ExactBox& box, std::size_t rowBytes, std::size_t /*componentBytes*/)
    : BoxSweep(static_cast<const BoxShape&>(box), rowBytes, ringBytes(box, 3, 2 * rowBytes)) {
  exact_ = box;
}

void BoxSweep::keepOthers(const std::byte* mask, std::size_t bytes) {
  for (std::size_t i = 0; i < kSweepUnit; ++i)
    state_.mask[i] = mask[i % bytes];
  state_.merges = true;
}

bool BoxSweep::fillsLines() {
  return HWY_DYNAMIC_DISPATCH(FillsLines)();
}

// Full scale is a box of one tap: results are the input.
template <class C>
bool BoxSweep::copied(const SweepRows& rows, const C* const* in, C* const* out) const {
  if (box_.scale != 16384) return false;
  for (std::int64_t j = std::max(rows.from, lead()); j < rows.to; ++j)
    std::memcpy(out[j - lead()], in[j - lead() + centre(box_)], state_.rowBytes);
  return true;
}

void BoxSweep::advance(const SweepRows& rows, const std::uint8_t* const* in, std::uint8_t* const* out) {
  if (rows.from == 0) state_.slot = 0;
  if (!copied(rows, in, out)) HWY_DYNAMIC_DISPATCH(Sweep8)(box_, state_, rows, in, out);
}

void BoxSweep::advance(const SweepRows& rows, const std::int16_t* const* in, std::int16_t* const* out) {
  if (rows.from == 0) state_.slot = 0;
  if (!copied(rows, in, out)) HWY_DYNAMIC_DISPATCH(Sweep16)(box_, state_, rows, in, out);
}

void BoxSweep::advance(const SweepRows& rows, const std::int32_t* const* in, std::int32_t* const* out) {
  if (rows.from == 0) state_.slot = 0;
  HWY_DYNAMIC_DISPATCH(Sweep32)(box_, state_, rows, in, out);
}

void BoxSweep::advance(const SweepRows& rows, const float* const* in, float* const* out) {
  if (rows.from == 0) state_.slot = 0;
  HWY_DYNAMIC_DISPATCH(SweepFloats)(exact_, state_, rows, in, out);
}

}  // namespace vblur
#endif  // HWY_ONCE
