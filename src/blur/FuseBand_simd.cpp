// AVX3_DL multiplies and adds 16-bit pairs in one instruction, which sums of 16-bit components gain from.
#define HWY_WANT_AVX3_DL

#include "blur/FuseBand.h"

#include <cstring>
#include <type_traits>

#include "image/HvKernel.h"
#include "image/VectorTargets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "blur/FuseBand_simd.cpp"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "blur/BoxSums-inl.h"
#include "blur/BoxUnit-inl.h"
#include "blur/ExactSums-inl.h"
#include "blur/FuseRows-inl.h"
#include "blur/TransposePixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace vblur {
namespace HWY_NAMESPACE {

// Those that are filtered.
struct CarriedOnes {
  const float* mask;  // of a row; null: all
  template <class D>
  HWY_INLINE hn::Vec<D> operator()(D d, hn::Vec<D> v, std::size_t at) const {
    const auto made = Carried(d, v);
    return mask == nullptr ? made : Merged(hn::LoadU(d, mask + at), made, v);
  }
};

// Positions of a band's block to rows of one position each, in the reverse order if backward. Functions of their own,
// with what they know at compile time.
template <class Word, bool kBackward, class Tile>
HWY_NOINLINE void BlockIntoRows([[maybe_unused]] const Tile& tile, const Word* from, std::int64_t lineBytes,
                                Word* rows) {
  constexpr std::int32_t kPixels = kFusedPixels<Word>;
  constexpr auto kLineBytes = static_cast<std::int64_t>(kFusedLine);
  const Side<Word> strip =
      kBackward ? Side<Word>{rows + (kFusedColumns - 1) * kPixels, -kLineBytes} : Side<Word>{rows, kLineBytes};
  if constexpr (std::is_same_v<Word, Rf>) {
    const CarriedOnes carries{tile.merges ? reinterpret_cast<const float*>(tile.mask) : nullptr};
    PixelsIntoStrip<kFusedLine>({from, lineBytes}, kFusedColumns, strip, carries);
  } else {
    IntoStrip<Word>({from, lineBytes}, kPixels, kFusedColumns, strip);
  }
}
template <class Word>
HWY_NOINLINE void RowsIntoGroup(const Word* rows, Word* group) {
  constexpr std::int32_t kPixels = kFusedPixels<Word>;
  constexpr auto kLineBytes = static_cast<std::int64_t>(kFusedLine);
  if constexpr (std::is_same_v<Word, Rf>) {
    PixelsIntoStrip<kFusedLine>({rows, kLineBytes}, kPixels, {group, kLineBytes}, AsItIs());
  } else {
    IntoStrip<Word>({rows, kLineBytes}, kPixels, kPixels, {group, kLineBytes});
  }
}

template <class Box>
using AlongY = void (*)(const FusedTile<Box>& tile, std::int32_t g, std::int32_t end);

template <class Tile>
HWY_INLINE std::byte* RowsOfBand(const Tile& tile, std::int32_t g) {
  return RingsOfGroup(tile, g).rows + static_cast<std::size_t>(tile.y.row + tile.rowInBlock) * kFusedLine;
}
template <class Tile>
HWY_INLINE std::byte* KeptOfGroup(const Tile& tile, std::int32_t g) {
  return tile.kept + static_cast<std::size_t>(g) * static_cast<std::size_t>(tile.keptRows) * kFusedLine;
}

// A block of results along x becomes rows of the groups, which go through the boxes along y with the last band.
template <class Word, class Box>
HWY_INLINE void ResultsIntoGroups(const FusedTile<Box>& tile, AlongY<Box> alongY) {
  constexpr auto kPixels = static_cast<std::int32_t>(kFusedLine / sizeof(Word));
  constexpr std::int32_t kGroups = kFusedColumns / kPixels;
  constexpr auto kLineBytes = static_cast<std::int64_t>(kFusedLine);
  const std::int32_t first = (tile.x.blocks - tile.x.leadBlocks) * kGroups;
  const std::int32_t end = HWY_MIN(first + kGroups, tile.groupCount);
  const std::byte* from = tile.results;
  for (std::int32_t g = first; g < end; ++g, from += kPixels * kLineBytes) {
    std::byte* const kept = KeptOfGroup(tile, g) + static_cast<std::size_t>(tile.keptAt) * kFusedLine;
    std::byte* const to = tile.keepsOnly ? kept : RowsOfBand(tile, g);
    RowsIntoGroup(reinterpret_cast<const Word*>(from), reinterpret_cast<Word*>(to));
    if (tile.keeps > 0 && !tile.keepsOnly) {
      std::memcpy(kept, to + static_cast<std::size_t>(tile.keepsFrom) * kFusedLine,
                  static_cast<std::size_t>(tile.keeps) * kFusedLine);
    }
  }
  if (tile.completes) alongY(tile, first, end);
}

// Where the results of a block will be stored through the caches; null if not.
template <class Word, class Box>
HWY_INLINE const std::byte* ResultsToCome(const FusedTile<Box>& tile) {
  const bool come = !tile.streams && tile.completes && tile.x.produces() && tile.y.produces();
  constexpr auto kBytes = static_cast<std::int64_t>(kFusedColumns * sizeof(Word));
  return come ? tile.target + (tile.x.blocks - tile.x.leadBlocks) * kBytes : nullptr;
}

// Whether sums of all the components that are filtered, in a block of rows, are exact.
template <class Sums, class Tile>
HWY_INLINE bool HoldsBlock([[maybe_unused]] const Tile& tile, [[maybe_unused]] const void* rows) {
  if constexpr (std::is_same_v<Sums, DoubleSums>) {
    const hn::CappedTag<float, kFusedLine / sizeof(float)> d;
    auto most = hn::Zero(d);
    for (std::size_t lane = 0; lane < kFusedLine / sizeof(float); lane += hn::Lanes(d)) {
      const auto ones = hn::LoadU(d, reinterpret_cast<const float*>(tile.mask) + lane);
      const float* row = static_cast<const float*>(rows) + lane;
      for (std::int32_t i = 0; i < kFusedColumns; ++i, row += kFusedLine / sizeof(float)) {
        const auto v = hn::Abs(hn::LoadU(d, row));
        most = hn::Max(most, tile.merges ? hn::And(ones, v) : v);
      }
    }
    return hn::AllFalse(d, hn::Gt(most, hn::Set(d, kMostInDoubles)));
  } else {
    return true;
  }
}

// Returns the blocks that are done: all before the first one that the sums do not hold.
template <class Word, bool kFraction, bool kMerges, class Sums, class Box>
std::int32_t BandAlongX(FusedTile<Box>& tile, const FusedStretch& stretch, AlongY<Box> alongY) {
  constexpr auto kLineBytes = static_cast<std::int64_t>(kFusedLine);
  const Sums sums(tile.boxX);
  const std::byte* from = stretch.first;
  const Rings rings{tile.sums, tile.gathered, tile.slotsX, tile.mask};
  for (std::int32_t b = 0; b < stretch.blocks; ++b, from += stretch.blockBytes) {
    auto* const rows = reinterpret_cast<Word*>(tile.gathered + static_cast<std::size_t>(tile.x.row) * kFusedLine);
    const auto* pixels = reinterpret_cast<const Word*>(from);
    if (stretch.backward) {
      BlockIntoRows<Word, true>(tile, pixels, stretch.lineBytes, rows);
    } else {
      BlockIntoRows<Word, false>(tile, pixels, stretch.lineBytes, rows);
    }
    if (!HoldsBlock<Sums>(tile, rows)) return b;
    const std::byte* next = b + 1 < stretch.blocks ? from + stretch.blockBytes : stretch.after;
    const AskAhead<sizeof(Word)> ask{next == nullptr ? from : next, next == nullptr ? 0 : stretch.lineBytes, 0,
                                     ResultsToCome<Word>(tile), tile.stride};
    RunLine<kFraction, kMerges>(sums, tile.x, rings, tile.results, kLineBytes, false, kFusedColumns, ask);
    if (tile.x.produces()) ResultsIntoGroups<Word>(tile, alongY);
    tile.x.endBlock();
  }
  return stretch.blocks;
}

template <class Word, class Sums, class Box>
std::int32_t FuseWith(FusedTile<Box>& tile, const FusedStretch& stretch, AlongY<Box> alongY) {
  if (tile.merges) {
    if (tile.boxX.d == 0) return BandAlongX<Word, false, true, Sums>(tile, stretch, alongY);
    return BandAlongX<Word, true, true, Sums>(tile, stretch, alongY);
  }
  if (tile.boxX.d == 0) return BandAlongX<Word, false, false, Sums>(tile, stretch, alongY);
  return BandAlongX<Word, true, false, Sums>(tile, stretch, alongY);
}

template <std::int32_t kRows, class Box>
HWY_INLINE void KeptIntoGroups(const FusedTile<Box>& tile, const std::int32_t* keptAt, AlongY<Box> alongY) {
  for (std::int32_t g = 0; g < tile.groupCount; ++g) {
    std::byte* to = RowsOfBand(tile, g);
    const std::byte* const kept = KeptOfGroup(tile, g);
    for (std::int32_t i = 0; i < kRows; ++i, to += kFusedLine)
      std::memcpy(to, kept + static_cast<std::size_t>(keptAt[i]) * kFusedLine, kFusedLine);
  }
  if (tile.completes) alongY(tile, 0, tile.groupCount);
}

template <class Sums, class Box>
AlongY<Box> AlongYBy(const FusedTile<Box>& tile) {
  if (tile.merges)
    return tile.boxY.d == 0 ? &GroupsAlongY<false, true, Sums, Box> : &GroupsAlongY<true, true, Sums, Box>;
  return tile.boxY.d == 0 ? &GroupsAlongY<false, false, Sums, Box> : &GroupsAlongY<true, false, Sums, Box>;
}

using IntegerTile = FusedTile<BoxConstants>;

// The unsigned number as wide as a pixel of four such components.
template <class Component>
using WordOf = std::conditional_t<sizeof(Component) == 1, std::uint32_t, std::uint64_t>;

// Rings along y are always packed: they fill the second cache.
template <class Component>
AlongY<BoxConstants> AlongYOf(const IntegerTile& tile) {
  return WithSums<Component, true>(tile.boxY, kFusedLine,
                                   [&](auto kind) { return AlongYBy<typename decltype(kind)::Type>(tile); });
}

template <class Component>
HWY_INLINE void FuseIntegers(IntegerTile& tile, const FusedStretch& stretch) {
  const auto alongY = AlongYOf<Component>(tile);
  WithSums<Component, false>(tile.boxX, kFusedLine, [&](auto kind) {
    FuseWith<WordOf<Component>, typename decltype(kind)::Type>(tile, stretch, alongY);
  });
}

template <class Component>
HWY_INLINE void FuseKeptIntegers(const IntegerTile& tile, const std::int32_t* keptAt) {
  KeptIntoGroups<kFusedPixels<WordOf<Component>>>(tile, keptAt, AlongYOf<Component>(tile));
}

using FloatTile = FusedTile<ExactBox>;

// What is summed so far, along x and along y.
void IntoIntegers(FloatTile& tile) {
  const std::size_t slotsX = static_cast<std::size_t>(tile.x.taps) * kFusedSlot;
  IntoIntegers(tile.boxX, tile.sums, kFusedSums);
  IntoIntegers(tile.boxX, tile.slotsX, slotsX);
  for (std::int32_t g = 0; g < tile.groupCount; ++g) {
    const Rings rings = RingsOfGroup(tile, g);
    IntoIntegers(tile.boxY, rings.sums, kFusedSums);
    IntoIntegers(tile.boxY, rings.slots, static_cast<std::size_t>(tile.y.taps) * kFusedSlot);
  }
  tile.inDoubles = false;
}

void Fuse32(FloatTile& tile, const FusedStretch& stretch) {
  HvEnterKernel<"fuseBand 32", HWY_TARGETS>(HWY_TARGET);
  FusedStretch rest = stretch;
  if constexpr (kSumsInDoubles) {
    if (tile.inDoubles) {
      const std::int32_t done = FuseWith<Rf, DoubleSums>(tile, stretch, AlongYBy<DoubleSums>(tile));
      if (done == stretch.blocks) return;
      IntoIntegers(tile);
      rest.first += done * stretch.blockBytes;
      rest.blocks -= done;
    }
  }
  FuseWith<Rf, ExactSums>(tile, rest, AlongYBy<ExactSums>(tile));
}

void FuseKept32(const FloatTile& tile, const std::int32_t* keptAt) {
  HvEnterKernel<"fuseBand 32", HWY_TARGETS>(HWY_TARGET);
  const bool inDoubles = kSumsInDoubles && tile.inDoubles;
  KeptIntoGroups<kFusedPixels<Rf>>(tile, keptAt, inDoubles ? AlongYBy<DoubleSums>(tile) : AlongYBy<ExactSums>(tile));
}

void Fuse8(IntegerTile& tile, const FusedStretch& stretch) {
  HvEnterKernel<"fuseBand 8", HWY_TARGETS>(HWY_TARGET);
  FuseIntegers<std::uint8_t>(tile, stretch);
}

void FuseKept8(const IntegerTile& tile, const std::int32_t* keptAt) {
  HvEnterKernel<"fuseBand 8", HWY_TARGETS>(HWY_TARGET);
  FuseKeptIntegers<std::uint8_t>(tile, keptAt);
}

void Fuse16(IntegerTile& tile, const FusedStretch& stretch) {
  HvEnterKernel<"fuseBand 16", HWY_TARGETS>(HWY_TARGET);
  FuseIntegers<std::int16_t>(tile, stretch);
}

void FuseKept16(const IntegerTile& tile, const std::int32_t* keptAt) {
  HvEnterKernel<"fuseBand 16", HWY_TARGETS>(HWY_TARGET);
  FuseKeptIntegers<std::int16_t>(tile, keptAt);
}

}  // namespace HWY_NAMESPACE
}  // namespace vblur
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace vblur {
namespace {

HWY_EXPORT(Fuse8);
HWY_EXPORT(FuseKept8);
HWY_EXPORT(Fuse16);
HWY_EXPORT(FuseKept16);
HWY_EXPORT(Fuse32);
HWY_EXPORT(FuseKept32);

}  // namespace

void fuseKeptBand8(const FusedTile<BoxConstants>& tile, const std::int32_t* keptAt) {
  HWY_DYNAMIC_DISPATCH(FuseKept8)(tile, keptAt);
}

void fuseBand8(FusedTile<BoxConstants>& tile, const FusedStretch& stretch) {
  HWY_DYNAMIC_DISPATCH(Fuse8)(tile, stretch);
}

void fuseKeptBand16(const FusedTile<BoxConstants>& tile, const std::int32_t* keptAt) {
  HWY_DYNAMIC_DISPATCH(FuseKept16)(tile, keptAt);
}

void fuseBand16(FusedTile<BoxConstants>& tile, const FusedStretch& stretch) {
  HWY_DYNAMIC_DISPATCH(Fuse16)(tile, stretch);
}

void fuseKeptBand32(const FusedTile<ExactBox>& tile, const std::int32_t* keptAt) {
  HWY_DYNAMIC_DISPATCH(FuseKept32)(tile, keptAt);
}

void fuseBand32(FusedTile<ExactBox>& tile, const FusedStretch& stretch) {
  HWY_DYNAMIC_DISPATCH(Fuse32)(tile, stretch);
}

}  // namespace vblur
#endif  // HWY_ONCE
