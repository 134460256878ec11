// Rows of a fused tile through the boxes of an axis: blocks of a band along x, groups of columns along y. Compiled once
// for each instruction set, by FuseBand_simd.cpp.
#if defined(VBLUR_BLUR_FUSEROWS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VBLUR_BLUR_FUSEROWS_INL_H
#undef VBLUR_BLUR_FUSEROWS_INL_H
#else
#define VBLUR_BLUR_FUSEROWS_INL_H
#endif

#include <cstddef>
#include <cstdint>

#include <hwy/cache_control.h>
#include <hwy/highway.h>

#include "blur/BoxSums-inl.h"
#include "blur/BoxUnit-inl.h"
#include "blur/FuseBand.h"

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// Rows of the ring that are read together with a row, and what is asked for meanwhile.
struct Steps {
  const std::byte* entering;
  const std::byte* leaving;
  const std::byte* others;  // null: results are not merged
  std::byte* slot;
  std::byte* ring;  // where slots begin
  std::byte* ringEnd;
  std::byte* to;
  std::int64_t toBytes;
};

// From one unit to the next.
struct Apart {
  std::size_t rows;
  std::size_t slots;
  std::size_t to;
};

// Prefetches the block that is read next, a cache line in each step. A block need not begin with a cache line: its
// first part has come with the block before.
template <std::int32_t kPixelBytes>
struct AskAhead {
  static constexpr std::int32_t kLines = kFusedColumns * kPixelBytes / static_cast<std::int32_t>(kFusedLine);

  HWY_INLINE void operator()() {
    hwy::Prefetch(line + (at + 1) * static_cast<std::int32_t>(kFusedLine) - 1);
    if (results != nullptr) {
      // As many rows as the boxes along y take, in as many steps as those along x.
      for (std::int32_t i = at % kStepsOfRow; i < kLines; i += kStepsOfRow)
        hwy::Prefetch(results + (i + 1) * static_cast<std::int32_t>(kFusedLine) - 1);
      if (at % kStepsOfRow == kStepsOfRow - 1) results += resultBytes;
    }
    if (++at == kLines) {
      at = 0;
      line += lineBytes;
    }
  }

  static constexpr std::int32_t kStepsOfRow = kFusedColumns / kFusedRows;
  const std::byte* line;
  std::int64_t lineBytes;
  std::int32_t at;
  const std::byte* results;  // null for none
  std::int64_t resultBytes;
};
struct AskNothing {
  HWY_INLINE void operator()() {}
};

template <bool kFraction, bool kMerges, Stage kStage, class Sums, std::size_t kUnits, class Ask>
HWY_INLINE void Run(const Sums& sums, Unit<Sums> (&units)[kUnits], Steps& at, const Apart& apart, const std::byte* mask,
                    bool streams, std::size_t slotBytes, std::int32_t count, Ask& ask) {
  using C = typename Sums::Component;
  const auto components = [](const std::byte* p) { return reinterpret_cast<const C*>(p); };
  for (std::int32_t i = 0; i < count; ++i) {
    ask();
    const std::byte* others = kMerges && kStage == kProduce ? at.others : nullptr;
    units[0].template Step<kFraction, kStage>(sums, components(at.entering), components(at.leaving), at.slot,
                                              {components(others), components(mask), streams},
                                              reinterpret_cast<C*>(at.to));
    if constexpr (kUnits == 2) {
      const std::byte* nextOthers = kMerges && kStage == kProduce ? others + apart.rows : nullptr;
      units[1].template Step<kFraction, kStage>(
          sums, components(at.entering + apart.rows), components(at.leaving + apart.rows), at.slot + apart.slots,
          {components(nextOthers), components(mask), streams}, reinterpret_cast<C*>(at.to + apart.to));
    }
    at.entering += kFusedLine;
    at.leaving += kFusedLine;
    if constexpr (kMerges) at.others += kFusedLine;
    if constexpr (kStage == kProduce) at.to += at.toBytes;
    if constexpr (kStage != kFillFirst || Unit<Sums>::kKeepsInput) {
      at.slot += slotBytes;
      if (at.slot == at.ringEnd) at.slot = at.ring;
    }
  }
}

// The rings of units side by side.
struct Rings {
  std::byte* sums;
  std::byte* rows;
  std::byte* slots;
  const std::byte* mask;
};

// Rows k to `end` of a block, in stretches between the wraps of the ring and the stages of the boxes.
template <bool kFraction, bool kMerges, class Sums, std::size_t kUnits, class Ask>
HWY_INLINE void RunBlock(const Sums& sums, Unit<Sums> (&units)[kUnits], const FusedAxis& axis, const Rings& rings,
                         const Apart& apart, std::byte* to, std::int64_t toBytes, bool streams, std::int32_t end,
                         Ask& ask) {
  constexpr std::size_t kSlotBytes = kFusedLine / Sums::kBytes * Unit<Sums>::kSlotBytes;
  const auto inRing = [&](std::int32_t row) {
    return rings.rows + static_cast<std::size_t>(row < 0 ? row + axis.ring : row) * kFusedLine;
  };
  std::int32_t k = HWY_MAX(0, -axis.step());
  // Of the slots. Results come with the second fill, inputs that are kept with the first.
  const std::int32_t first = Unit<Sums>::kKeepsInput ? 0 : axis.taps;
  const std::int32_t stepped = HWY_MAX(0, axis.step() + k - first);
  Steps at{};
  at.ring = rings.slots;
  at.ringEnd = rings.slots + static_cast<std::size_t>(axis.taps) * kSlotBytes;
  at.slot = rings.slots + static_cast<std::size_t>(stepped % axis.taps) * kSlotBytes;
  at.to = to;
  at.toBytes = toBytes;
  while (k < end) {
    const std::int32_t leaving = axis.row + k - axis.taps;
    const std::int32_t others = axis.row + k - axis.behind;
    std::int32_t count = end - k;
    if (leaving < 0) count = HWY_MIN(count, -leaving);
    if (kMerges && others < 0) count = HWY_MIN(count, -others);
    const std::int32_t step = axis.step() + k;
    at.entering = inRing(axis.row + k);
    at.leaving = inRing(leaving);
    at.others = kMerges ? inRing(others) : nullptr;
    if (step >= 3 * axis.taps) {
      Run<kFraction, kMerges, kProduce>(sums, units, at, apart, rings.mask, streams, kSlotBytes, count, ask);
    } else if (step >= 2 * axis.taps) {
      count = HWY_MIN(count, 3 * axis.taps - step);
      Run<kFraction, kMerges, kFillThird>(sums, units, at, apart, rings.mask, streams, kSlotBytes, count, ask);
    } else if (step >= axis.taps) {
      count = HWY_MIN(count, 2 * axis.taps - step);
      Run<kFraction, kMerges, kFillSecond>(sums, units, at, apart, rings.mask, streams, kSlotBytes, count, ask);
    } else {
      count = HWY_MIN(count, axis.taps - step);
      Run<kFraction, kMerges, kFillFirst>(sums, units, at, apart, rings.mask, streams, kSlotBytes, count, ask);
    }
    k += count;
  }
}

// Units that lie side by side in a row of kFusedLine bytes, in one step.
template <class Sums>
inline constexpr std::size_t kUnitsOfLine = HWY_MIN(Sums::kUnits, kFusedLine / Sums::kBytes);

template <class Sums, std::size_t kUnits>
HWY_INLINE void LoadUnits(const Sums& sums, Unit<Sums> (&units)[kUnits], bool first, const std::byte* kept,
                          std::size_t apart) {
  for (std::size_t u = 0; u < kUnits; ++u) {
    if (first) {
      units[u].Begin(sums);
    } else {
      units[u].Load(kept + u * apart);
    }
  }
}

// A block of rows of one line's width, all units of it. The results go to rows toBytes apart.
template <bool kFraction, bool kMerges, class Sums, class Ask>
HWY_INLINE void RunLine(const Sums& sums, const FusedAxis& axis, const Rings& line, std::byte* to, std::int64_t toBytes,
                        bool streams, std::int32_t end, const Ask& asked) {
  constexpr std::size_t kUnits = kUnitsOfLine<Sums>;
  constexpr Apart kApart{Sums::kBytes, Unit<Sums>::kSlotBytes, Sums::kBytes};
  for (std::size_t u = 0; u < kFusedLine / Sums::kBytes; u += kUnits) {
    const Rings rings{line.sums + u * 3 * Sums::kSumBytes, line.rows + u * Sums::kBytes,
                      line.slots + u * Unit<Sums>::kSlotBytes, line.mask + u * Sums::kBytes};
    Unit<Sums> units[kUnits];
    LoadUnits(sums, units, axis.blocks == 0, rings.sums, 3 * Sums::kSumBytes);
    Ask ask = asked;
    RunBlock<kFraction, kMerges>(sums, units, axis, rings, kApart, to + u * Sums::kBytes, toBytes, streams, end, ask);
    for (std::size_t i = 0; i < kUnits; ++i)
      units[i].Store(rings.sums + i * 3 * Sums::kSumBytes);
  }
}

HWY_INLINE void StreamLines(const std::byte* from, std::byte* to, std::int64_t toBytes, std::int32_t rows) {
  const hn::CappedTag<std::uint8_t, kFusedLine> d;
  for (std::int32_t i = 0; i < rows; ++i, from += kFusedLine, to += toBytes) {
    for (std::size_t at = 0; at < kFusedLine; at += hn::Lanes(d)) {
      hn::Stream(hn::LoadU(d, reinterpret_cast<const std::uint8_t*>(from) + at), d,
                 reinterpret_cast<std::uint8_t*>(to) + at);
    }
  }
}

template <class Tile>
HWY_INLINE Rings RingsOfGroup(const Tile& tile, std::int32_t g) {
  std::byte* const group = tile.groups + static_cast<std::size_t>(g) * tile.groupBytes;
  std::byte* const rows = group + kFusedSums;
  return {group, rows, rows + static_cast<std::size_t>(tile.y.ring) * kFusedLine, tile.mask};
}

// A block of rows of one group through the boxes along y.
template <bool kFraction, bool kMerges, class Sums, class Tile>
HWY_INLINE void GroupAlongY(const Sums& sums, const Tile& tile, std::int32_t g) {
  const Rings rings = RingsOfGroup(tile, g);
  const bool produces = tile.y.produces();
  const std::int32_t end = produces ? tile.rows : kFusedRows;
  std::byte* const to = tile.target + static_cast<std::int64_t>(g) * static_cast<std::int64_t>(kFusedLine);
  constexpr std::size_t kStepBytes = kUnitsOfLine<Sums> * Sums::kBytes;
  constexpr auto kLineBytes = static_cast<std::int64_t>(kFusedLine);
  if (g == tile.partialFirst || g == tile.partialLast) {
    std::byte* const partial = tile.partial + (g == tile.partialFirst ? 0 : kFusedRows * kFusedLine);
    return RunLine<kFraction, kMerges>(sums, tile.y, rings, partial, kLineBytes, false, end, AskNothing());
  }
  if (kStepBytes < kFusedLine && tile.streams) {
    alignas(kFusedLine) std::byte lines[kFusedRows * kFusedLine];
    RunLine<kFraction, kMerges>(sums, tile.y, rings, lines, kLineBytes, false, end, AskNothing());
    if (produces) StreamLines(lines, to, tile.stride, end);
    return;
  }
  RunLine<kFraction, kMerges>(sums, tile.y, rings, to, tile.stride, tile.streams, end, AskNothing());
}

// Two groups side by side, so that results are stored two cache lines together.
template <bool kFraction, bool kMerges, class Sums, class Tile>
HWY_INLINE void PairAlongY(const Sums& sums, const Tile& tile, std::int32_t g) {
  const Rings rings = RingsOfGroup(tile, g);
  const Apart apart{tile.groupBytes, tile.groupBytes, kFusedLine};
  Unit<Sums> units[2];
  LoadUnits(sums, units, false, rings.sums, tile.groupBytes);
  AskNothing ask;
  RunBlock<kFraction, kMerges>(sums, units, tile.y, rings, apart,
                               tile.target + static_cast<std::int64_t>(g) * static_cast<std::int64_t>(kFusedLine),
                               tile.stride, tile.streams, tile.rows, ask);
  for (std::size_t i = 0; i < 2; ++i)
    units[i].Store(rings.sums + i * tile.groupBytes);
}

// Groups g to `end` - 1.
template <bool kFraction, bool kMerges, class Sums, class Box>
void GroupsAlongY(const FusedTile<Box>& tile, std::int32_t g, std::int32_t end) {
  const Sums sums(tile.boxY);
  if constexpr (Sums::kBytes == kFusedLine && Sums::kUnits == 2) {
    const auto isPartial = [&](std::int32_t i) { return i == tile.partialFirst || i == tile.partialLast; };
    for (; tile.y.produces() && g + 2 <= end && !isPartial(g) && !isPartial(g + 1); g += 2)
      PairAlongY<kFraction, kMerges>(sums, tile, g);
  }
  for (; g < end; ++g)
    GroupAlongY<kFraction, kMerges>(sums, tile, g);
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#endif  // include guard
