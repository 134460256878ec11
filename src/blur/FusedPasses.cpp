#include "blur/FusedPasses.h"

#include <algorithm>
#include <type_traits>

#include <hwy/cache_control.h>

#include "blur/SharedMemory.h"
#include "image/HvProcessors.h"

namespace vblur {
namespace {

constexpr auto kLineOfResults = static_cast<std::int64_t>(kFusedLine);

template <class Pixel>
constexpr std::int64_t kBlockBytes = kFusedColumns* static_cast<std::int64_t>(sizeof(Pixel));

// The rows that a band of a block takes: as many lines as a cache line has pixels.
template <class Pixel>
constexpr std::size_t kBandBytes = static_cast<std::size_t>(kBlockBytes<Pixel>* kFusedPixels<Pixel>);

// Cache lines of a slot of the rings along y: those of integers are packed.
template <class Box>
constexpr std::size_t kLinesOfSlot = std::is_same_v<Box, ExactBox> ? kFusedSlot / kFusedLine : 2;

template <class Box>
std::size_t bytesOfGroup(const FusedTile<Box>& tile) {
  const std::size_t lines = kFusedSums / kFusedLine + static_cast<std::size_t>(tile.y.ring) +
                            kLinesOfSlot<Box> * static_cast<std::size_t>(tile.y.taps);
  // An odd number: groups would compete for a few cache sets otherwise.
  return (lines | 1) * kFusedLine;
}

// What two passes cost, in pixels through the boxes of one axis: of floats, whose sums take most of the time, less than
// the memory between the passes would cost integers.
template <class Pixel>
constexpr double kCostOfTwoPasses = Pixel::kIntegral ? 2 * 1.2 : 2 * 1.075;

template <class Box>
std::size_t bytesAlongX(const FusedTile<Box>& tile) {
  return (static_cast<std::size_t>(tile.x.ring) + kFusedColumns) * kFusedLine +
         static_cast<std::size_t>(tile.x.taps) * kFusedSlot;
}

bool scales(const BoxConstants& box) {
  return box.scale < 16384;
}

bool scales(const ExactBox& box) {
  return BoxSweep::taps(box) > 1;
}

void fuseBand(FusedTile<BoxConstants>& tile, const FusedStretch& stretch, const R8* /*pixels*/) {
  fuseBand8(tile, stretch);
}
void fuseBand(FusedTile<BoxConstants>& tile, const FusedStretch& stretch, const R16* /*pixels*/) {
  fuseBand16(tile, stretch);
}
void fuseBand(FusedTile<ExactBox>& tile, const FusedStretch& stretch, const Rf* /*pixels*/) {
  fuseBand32(tile, stretch);
}

void fuseKeptBand(const FusedTile<BoxConstants>& tile, const std::int32_t* keptAt, const R8* /*pixels*/) {
  fuseKeptBand8(tile, keptAt);
}
void fuseKeptBand(const FusedTile<BoxConstants>& tile, const std::int32_t* keptAt, const R16* /*pixels*/) {
  fuseKeptBand16(tile, keptAt);
}
void fuseKeptBand(const FusedTile<ExactBox>& tile, const std::int32_t* keptAt, const Rf* /*pixels*/) {
  fuseKeptBand32(tile, keptAt);
}

// Whether groups of columns can be cache lines in all rows.
template <class Texture>
bool hasWholeLines(const Texture& out) {
  return out.stride % kLineOfResults == 0 &&
         reinterpret_cast<std::uintptr_t>(out.data) % sizeof(typename Texture::Pixel) == 0;
}

}  // namespace

template <class Pixel, class Accum>
bool FusedPasses<Pixel, Accum>::fits(const Texture& in, const Texture& out, const BoxOf<Pixel>& boxX,
                                     const BoxOf<Pixel>& boxY, const StripChannels<Pixel>& channels, bool keepsOthers) {
  const bool whole = channels.all || keepsOthers;
  return whole && scales(boxX) && scales(boxY) && !shareMemory(in, out);
}

template <class Pixel, class Accum>
FusedPasses<Pixel, Accum>::FusedPasses(const Texture& out, const BoxOf<Pixel>& boxX, const BoxOf<Pixel>& boxY,
                                       const BoxReach& columns, const BoxReach& rows,
                                       const StripChannels<Pixel>& channels, std::int32_t threads)
    : boxX_(withWeightyEnds(boxX)), boxY_(withWeightyEnds(boxY)), columns_(columns), rows_(rows), channels_(channels) {
  const Pixel* first = out.target(static_cast<std::int32_t>(columns.first), static_cast<std::int32_t>(rows.first));
  lined_ = hasWholeLines(out);
  before_ =
      lined_ ? static_cast<std::int32_t>(reinterpret_cast<std::uintptr_t>(first) % kFusedLine / sizeof(Pixel)) : 0;
  const std::int64_t width = columns.last - columns.first;
  const std::int64_t height = rows.last - rows.first;
  groups_ = static_cast<std::int32_t>((before_ + width + kPixels - 1) / kPixels);
  streams(width * height * static_cast<std::int64_t>(sizeof(Pixel)) >= kStreamedBytes);
  const Tile tile = emptyTile();
  plan_ = planFused({groups_, height, kPixels, tile.x.leadBlocks * kFusedColumns, tile.y.leadBlocks * kFusedRows,
                     bytesOfGroup(tile), HvSecondCacheBytes() / 4 * 5, threads, kCostOfTwoPasses<Pixel>});
}

template <class Pixel, class Accum>
auto FusedPasses<Pixel, Accum>::emptyTile() const -> Tile {
  Tile tile{boxX_, boxY_, {boxX_, kFusedColumns, !channels_.all}, {boxY_, kFusedRows, !channels_.all}};
  tile.merges = !channels_.all;
  for (std::size_t at = 0; at < kFusedLine; at += sizeof(Pixel))
    std::memcpy(tile.mask + at, &channels_.bits, sizeof(Pixel));
  tile.groupBytes = bytesOfGroup(tile);
  tile.streams = streams_;
  return tile;
}

template <class Pixel, class Accum>
bool FusedPasses<Pixel, Accum>::run(const Texture& in, const Texture& out, HvInterruptRecord* interrupt) {
  const std::int32_t tiles = plan_.columns * plan_.rows;
  std::int32_t number = next_.fetch_add(1, std::memory_order_relaxed);
  if (number >= tiles) return true;
  Tile tile = emptyTile();
  const auto mostGroups = static_cast<std::size_t>((groups_ + plan_.columns - 1) / plan_.columns);
  tile.keptRows = mostKept();
  const std::size_t keptBytes = static_cast<std::size_t>(tile.keptRows) * kFusedLine;
  constexpr std::size_t kPartialBytes = 2 * kFusedRows * kFusedLine;
  std::size_t bytes =
      bytesAlongX(tile) + kPartialBytes + kBandBytes<Pixel> + mostGroups * (tile.groupBytes + keptBytes);
  // Whole large pages, unless most of one would be idle.
  if (bytes > kScratchPage / 4) bytes = (bytes + kScratchPage - 1) / kScratchPage * kScratchPage;
  const HvScratchBlock scratch = takeScratch(bytes);
  if (scratch.memory == nullptr) return false;
  tile.gathered = scratch.memory;
  tile.results = tile.gathered + static_cast<std::size_t>(tile.x.ring) * kFusedLine;
  tile.slotsX = tile.results + kFusedColumns * kFusedLine;
  tile.partial = scratch.memory + bytesAlongX(tile);
  std::byte* const block = tile.partial + kPartialBytes;
  tile.groups = block + kBandBytes<Pixel>;
  tile.kept = tile.groups + mostGroups * tile.groupBytes;
  for (; number < tiles && poll(interrupt) == 0; number = next_.fetch_add(1, std::memory_order_relaxed))
    filterTile(in, out, tile, block, number, interrupt);
  hwy::FlushStream();
  giveScratch(scratch);
  return true;
}

template <class Pixel, class Accum>
void FusedPasses<Pixel, Accum>::filterTile(const Texture& in, const Texture& out, Tile& tile, std::byte* block,
                                           std::int32_t number, HvInterruptRecord* interrupt) const {
  const auto part = [](std::int64_t whole, std::int32_t parts, std::int32_t i) { return whole * i / parts; };
  const std::int32_t column = number % plan_.columns;
  const std::int32_t row = number / plan_.columns;
  const std::int64_t firstGroup = part(groups_, plan_.columns, column);
  const std::int64_t height = rows_.last - rows_.first;
  const std::int64_t y1 = rows_.first + part(height, plan_.rows, row);
  const std::int64_t y2 = rows_.first + part(height, plan_.rows, row + 1);
  tile.groupCount = static_cast<std::int32_t>(part(groups_, plan_.columns, column + 1) - firstGroup);
  if (tile.groupCount == 0 || y1 == y2) return;
  const std::int64_t x1 = columns_.first - before_ + firstGroup * kPixels;
  tile.partialFirst = x1 < columns_.first ? 0 : -1;
  const bool endsWithin = x1 + std::int64_t{tile.groupCount} * kPixels > columns_.last;
  tile.partialLast = endsWithin && (tile.groupCount > 1 || tile.partialFirst < 0) ? tile.groupCount - 1 : -1;
  tile.stride = out.stride;

  const std::int64_t left = x1 - BoxSweep::centre(boxX_) - tile.x.phase;
  const Band band{in, block, left, tile.x.leadBlocks + (tile.groupCount * kPixels + kFusedColumns - 1) / kFusedColumns};
  const std::int64_t top = y1 - BoxSweep::centre(boxY_) - tile.y.phase;
  const std::int64_t produced = top + std::int64_t{tile.y.leadBlocks} * kFusedRows;  // by the band of row y1
  const std::int64_t end = produced + (y2 - y1 + kFusedRows - 1) / kFusedRows * kFusedRows;
  tile.inDoubles = true;
  KeptRows kept = keptRows(in, top, end);
  if (kept.above > 0 && !keepAbove(band, tile, kept, interrupt)) return;
  tile.y.begin();
  for (std::int64_t y = top; y < end;) {
    const std::int64_t result = y1 + (y - produced);
    tile.rows = static_cast<std::int32_t>(std::min<std::int64_t>(kFusedRows, y2 - result));
    tile.target = reinterpret_cast<std::byte*>(out.target(0, 0)) + (x1 * kPixelBytes) + result * out.stride;
    for (std::int32_t i = 0; i < kFusedRows; i += kPixels, y += kPixels) {
      if (stoppedBefore(interrupt, kPixels)) return;
      tile.rowInBlock = i;
      tile.completes = i + kPixels == kFusedRows;
      std::int32_t keptAt[kPixels];
      if (kept.have(in, y, keptAt)) {
        fuseKeptBand(tile, keptAt, reinterpret_cast<Pixel*>(block));
        continue;
      }
      keepBelow(in, y, tile, kept);
      filterBand(band, tile, y);
      tile.keeps = 0;
    }
    if (tile.y.produces()) scatterPartial(out, tile, x1, result);
    tile.y.endBlock();
  }
}

// Rows beyond the edges are filtered along x once, where they mirror or repeat rows within.
template <class Pixel, class Accum>
auto FusedPasses<Pixel, Accum>::keptRows(const Texture& in, std::int64_t top, std::int64_t end) const -> KeptRows {
  const HvTexAxis& rows = in.vertical;
  KeptRows kept;
  if (rows.size <= 0 || (rows.edgeMethod != kEdgeReflect && rows.edgeMethod != kEdgeRepeat)) return kept;
  const auto whole = [](std::int64_t n) { return (n + kPixels - 1) / kPixels * kPixels; };
  const std::int64_t above = whole(std::int64_t{rows.originI} + rows.lo - top);
  const std::int64_t below = whole(end - 1 - (std::int64_t{rows.originI} + rows.hi));
  if (above > 0 && above <= mostKept() && above < rows.count) kept.above = static_cast<std::int32_t>(above);
  if (below > 0 && below <= mostKept() && below < rows.count) kept.below = static_cast<std::int32_t>(below);
  return kept;
}

// Whether all rows of a band from y on are kept, and where.
template <class Pixel, class Accum>
bool FusedPasses<Pixel, Accum>::KeptRows::have(const Texture& in, std::int64_t y, std::int32_t* at) const {
  for (std::int32_t i = 0; i < kPixels; ++i) {
    at[i] = in.vertical.mapIndex(wrapSub(static_cast<std::int32_t>(y + i), in.vertical.originI)) - first;
    if (at[i] < 0 || at[i] >= count) return false;
  }
  return true;
}

// The rows at the upper edge, before those that mirror them are read. False after a stop.
template <class Pixel, class Accum>
bool FusedPasses<Pixel, Accum>::keepAbove(const Band& band, Tile& tile, KeptRows& kept,
                                          HvInterruptRecord* interrupt) const {
  kept.first = band.in.vertical.lo;
  tile.keepsOnly = true;
  tile.completes = false;
  for (tile.keptAt = 0; tile.keptAt < kept.above; tile.keptAt += kPixels) {
    if (stoppedBefore(interrupt, kPixels)) break;
    filterBand(band, tile, std::int64_t{band.in.vertical.originI} + kept.first + tile.keptAt);
    kept.count += kPixels;
  }
  tile.keepsOnly = false;
  return kept.count == kept.above;
}

// Has the rows of a band from y on that are at the lower edge kept.
template <class Pixel, class Accum>
void FusedPasses<Pixel, Accum>::keepBelow(const Texture& in, std::int64_t y, Tile& tile, KeptRows& kept) const {
  const std::int64_t row = y - in.vertical.originI;
  const std::int64_t first = std::int64_t{in.vertical.hi} + 1 - kept.below;
  const std::int64_t from = std::max(row, first);
  const std::int64_t to = std::min<std::int64_t>(row + kPixels, std::int64_t{in.vertical.hi} + 1);
  if (from >= to) return;
  if (from == first) {
    kept.first = static_cast<std::int32_t>(first);
    kept.count = 0;
  }
  // A window that begins within them keeps none.
  if (kept.first + kept.count != from || kept.first != first) return;
  tile.keeps = static_cast<std::int32_t>(to - from);
  tile.keepsFrom = static_cast<std::int32_t>(from - row);
  tile.keptAt = kept.count;
  kept.count += tile.keeps;
}

// Blocks of a kind from position x on, at most `most`.
template <class Pixel, class Accum>
auto FusedPasses<Pixel, Accum>::columnsAt(const Texture& in, std::int64_t x, std::int32_t most) -> Columns {
  const HvTexRun run = in.horizontal.runAt(static_cast<std::int32_t>(x));
  if (run.index == kOutside || run.step == 0 || run.length < kFusedColumns) return {Columns::kGathered, 0, 1};
  const std::int32_t blocks = std::min(most, run.length / kFusedColumns);
  if (run.step > 0) return {Columns::kForward, run.index, blocks};
  return {Columns::kBackward, run.index - (kFusedColumns - 1), blocks};
}

template <class Pixel, class Accum>
auto FusedPasses<Pixel, Accum>::rowsOf(const Texture& in, std::int64_t y) const -> Rows {
  const auto at = [&](std::int32_t i) {
    return in.vertical.mapIndex(wrapSub(static_cast<std::int32_t>(y + i), in.vertical.originI));
  };
  const std::int32_t first = at(0);
  const std::int32_t step = kPixels > 1 ? at(1) - first : 0;
  Rows rows{nullptr, step * in.stride, true, first == kOutside || in.horizontal.size <= 0};
  for (std::int32_t i = 1; i < kPixels; ++i)
    rows.together = rows.together && (at(i) == kOutside) == rows.outside && at(i) == first + i * step;
  if (!rows.outside) rows.first = reinterpret_cast<const std::byte*>(in.at(0, first));
  return rows;
}

template <class Pixel, class Accum>
void FusedPasses<Pixel, Accum>::filterBand(const Band& band, Tile& tile, std::int64_t y) const {
  const Texture& in = band.in;
  const Rows rows = rowsOf(in, y);
  tile.x.begin();
  auto* const pixels = reinterpret_cast<Pixel*>(band.block);
  if (rows.outside && rows.together) {
    std::fill_n(pixels, kFusedColumns, in.outsideColour);
    return fuseBand(tile, {band.block, 0, 0, band.blocks, false, nullptr}, pixels);
  }
  const Rows next = rowsOf(in, y + kPixels);
  const bool asks = next.together && !next.outside && next.bytes == rows.bytes;
  const std::byte* after = nullptr;  // the next band's first block that is read forward
  for (std::int32_t done = 0; done < band.blocks;) {
    const std::int64_t x = band.left + std::int64_t{done} * kFusedColumns;
    const Columns some = columnsAt(in, x, band.blocks - done);
    if (rows.together && some.kind != Columns::kGathered) {
      const bool backward = some.kind == Columns::kBackward;
      const std::int64_t at = some.index * kPixelBytes;
      if (asks && !backward && after == nullptr) after = next.first + at;
      fuseBand(tile,
               {rows.first + at, rows.bytes, backward ? -kBlockBytes<Pixel> : kBlockBytes<Pixel>, some.blocks, backward,
                backward ? nullptr : after},
               pixels);
      done += some.blocks;
    } else {
      gather(in, pixels, x, y);
      fuseBand(tile, {band.block, kBlockBytes<Pixel>, 0, 1, false, nullptr}, pixels);
      ++done;
    }
  }
}

// A block of a band through the edge methods.
template <class Pixel, class Accum>
void FusedPasses<Pixel, Accum>::gather(const Texture& in, Pixel* block, std::int64_t x, std::int64_t y) const {
  for (std::int32_t j = 0; j < kPixels; ++j, block += kFusedColumns) {
    for (std::int32_t i = 0; i < kFusedColumns;) {
      const HvPixelRun<Pixel> run = in.readRun(static_cast<std::int32_t>(x + i), static_cast<std::int32_t>(y + j));
      const std::int32_t n = std::min(run.length, kFusedColumns - i);
      copyPixels(block + i, run, n);
      i += n;
    }
  }
}

// Results of groups that are only in part within the window, from row y on.
template <class Pixel, class Accum>
void FusedPasses<Pixel, Accum>::scatterPartial(const Texture& out, const Tile& tile, std::int64_t x,
                                               std::int64_t y) const {
  for (const bool first : {true, false}) {
    const std::int32_t group = first ? tile.partialFirst : tile.partialLast;
    if (group < 0) continue;
    const std::int64_t left = x + std::int64_t{group} * kPixels;
    const std::int64_t from = std::max(left, columns_.first);
    const std::int64_t to = std::min(left + kPixels, columns_.last);
    const auto* line = reinterpret_cast<const Pixel*>(tile.partial + (first ? 0 : kFusedRows * kFusedLine));
    for (std::int32_t i = 0; i < tile.rows; ++i, line += kPixels) {
      std::memcpy(out.target(static_cast<std::int32_t>(from), static_cast<std::int32_t>(y + i)), line + (from - left),
                  static_cast<std::size_t>(to - from) * sizeof(Pixel));
    }
  }
}

template class FusedPasses<R8, Ri>;
template class FusedPasses<R16, Ri>;
template class FusedPasses<Rf, Rf>;

}  // namespace vblur
