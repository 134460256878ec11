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

template <class Box>
std::size_t bytesOfGroup(const FusedTile<Box>& tile) {
  // Rings along y are packed. An odd number of cache lines: groups would compete for a few cache sets otherwise.
  const std::size_t lines =
      kFusedSums / kFusedLine + static_cast<std::size_t>(tile.y.ring) + 2 * static_cast<std::size_t>(tile.y.taps);
  return (lines | 1) * kFusedLine;
}

template <class Box>
std::size_t bytesAlongX(const FusedTile<Box>& tile) {
  return (static_cast<std::size_t>(tile.x.ring) + kFusedColumns) * kFusedLine +
         static_cast<std::size_t>(tile.x.taps) * kFusedSlot;
}

bool scales(const BoxConstants& box) {
  return box.scale < 16384;
}

void fuseBand(FusedTile<BoxConstants>& tile, const FusedStretch& stretch, const R8* /*pixels*/) {
  fuseBand8(tile, stretch);
}
void fuseBand(FusedTile<BoxConstants>& tile, const FusedStretch& stretch, const R16* /*pixels*/) {
  fuseBand16(tile, stretch);
}

}  // namespace

template <class Pixel, class Accum>
bool FusedPasses<Pixel, Accum>::fits(const Texture& in, const Texture& out, const BoxOf<Pixel>& boxX,
                                     const BoxOf<Pixel>& boxY, const StripChannels<Pixel>& channels, bool keepsOthers) {
  const bool whole = channels.all || keepsOthers;
  const bool aligned =
      out.stride % kLineOfResults == 0 && reinterpret_cast<std::uintptr_t>(out.data) % sizeof(Pixel) == 0;
  return whole && aligned && scales(boxX) && scales(boxY) && !shareMemory(in, out);
}

template <class Pixel, class Accum>
FusedPasses<Pixel, Accum>::FusedPasses(const Texture& out, const BoxOf<Pixel>& boxX, const BoxOf<Pixel>& boxY,
                                       const BoxReach& columns, const BoxReach& rows,
                                       const StripChannels<Pixel>& channels, std::int32_t threads)
    : boxX_(withWeightyEnds(boxX)), boxY_(withWeightyEnds(boxY)), columns_(columns), rows_(rows), channels_(channels) {
  const Pixel* first = out.target(static_cast<std::int32_t>(columns.first), static_cast<std::int32_t>(rows.first));
  before_ = static_cast<std::int32_t>(reinterpret_cast<std::uintptr_t>(first) % kFusedLine / sizeof(Pixel));
  const std::int64_t width = columns.last - columns.first;
  const std::int64_t height = rows.last - rows.first;
  groups_ = static_cast<std::int32_t>((before_ + width + kPixels - 1) / kPixels);
  streams_ = width * height * static_cast<std::int64_t>(sizeof(Pixel)) >= kStreamedBytes;
  const Tile tile = emptyTile();
  plan_ = planFused({groups_, height, kPixels, tile.x.leadBlocks * kFusedColumns, tile.y.leadBlocks * kFusedRows,
                     bytesOfGroup(tile), HvSecondCacheBytes(), threads});
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
  constexpr std::size_t kPartialBytes = 2 * kFusedRows * kFusedLine;
  const HvScratchBlock scratch =
      takeScratch(bytesAlongX(tile) + kPartialBytes + kBandBytes<Pixel> + mostGroups * tile.groupBytes);
  if (scratch.memory == nullptr) return false;
  tile.gathered = scratch.memory;
  tile.results = tile.gathered + static_cast<std::size_t>(tile.x.ring) * kFusedLine;
  tile.slotsX = tile.results + kFusedColumns * kFusedLine;
  tile.partial = scratch.memory + bytesAlongX(tile);
  std::byte* const block = tile.partial + kPartialBytes;
  tile.groups = block + kBandBytes<Pixel>;
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
  const std::vector<Columns> columns =
      columnsOf(in, left, tile.x.leadBlocks + (tile.groupCount * kPixels + kFusedColumns - 1) / kFusedColumns);
  const std::int64_t top = y1 - BoxSweep::centre(boxY_) - tile.y.phase;
  const std::int64_t produced = top + std::int64_t{tile.y.leadBlocks} * kFusedRows;  // by the band of row y1
  tile.y.begin();
  for (std::int64_t y = top; y - produced < y2 - y1;) {
    const std::int64_t result = y1 + (y - produced);
    tile.rows = static_cast<std::int32_t>(std::min<std::int64_t>(kFusedRows, y2 - result));
    tile.target = reinterpret_cast<std::byte*>(out.target(0, 0)) + (x1 * kPixelBytes) + result * out.stride;
    for (std::int32_t i = 0; i < kFusedRows; i += kPixels, y += kPixels) {
      if (stoppedBefore(interrupt, kPixels)) return;
      tile.rowInBlock = i;
      tile.completes = i + kPixels == kFusedRows;
      filterBand(in, tile, block, columns, y);
    }
    if (tile.y.produces()) scatterPartial(out, tile, x1, result);
    tile.y.endBlock();
  }
}

// Blocks from position x on.
template <class Pixel, class Accum>
auto FusedPasses<Pixel, Accum>::columnsOf(const Texture& in, std::int64_t x, std::int32_t blocks) const
    -> std::vector<Columns> {
  std::vector<Columns> all;
  for (std::int32_t b = 0; b < blocks; ++b, x += kFusedColumns) {
    const HvTexRun run = in.horizontal.runAt(static_cast<std::int32_t>(x));
    Columns next{Columns::kGathered, 0, 1, x};
    if (run.index != kOutside && run.step != 0 && run.length >= kFusedColumns) {
      next.kind = run.step > 0 ? Columns::kForward : Columns::kBackward;
      next.index = run.step > 0 ? run.index : run.index - (kFusedColumns - 1);
    }
    const std::int32_t step = next.kind == Columns::kForward ? kFusedColumns : -kFusedColumns;
    const bool joins = !all.empty() && all.back().kind == next.kind &&
                       (next.kind == Columns::kGathered || all.back().index + all.back().blocks * step == next.index);
    if (joins) {
      ++all.back().blocks;
    } else {
      all.push_back(next);
    }
  }
  return all;
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
void FusedPasses<Pixel, Accum>::filterBand(const Texture& in, Tile& tile, std::byte* block,
                                           const std::vector<Columns>& columns, std::int64_t y) const {
  const Rows rows = rowsOf(in, y);
  tile.x.begin();
  auto* const pixels = reinterpret_cast<Pixel*>(block);
  if (rows.outside && rows.together) {
    std::fill_n(pixels, kFusedColumns, in.outsideColour);
    std::int32_t blocks = 0;
    for (const Columns& some : columns)
      blocks += some.blocks;
    return fuseBand(tile, {block, 0, 0, blocks, false, nullptr}, pixels);
  }
  // The next band's first block that is read directly.
  const auto direct =
      std::find_if(columns.begin(), columns.end(), [](const Columns& some) { return some.kind == Columns::kForward; });
  const Rows next = rowsOf(in, y + kPixels);
  const bool asks = direct != columns.end() && next.together && !next.outside && next.bytes == rows.bytes;
  const std::byte* const after = asks ? next.first + direct->index * kPixelBytes : nullptr;
  for (const Columns& some : columns) {
    if (rows.together && some.kind != Columns::kGathered) {
      const bool backward = some.kind == Columns::kBackward;
      fuseBand(tile,
               {rows.first + some.index * kPixelBytes, rows.bytes, backward ? -kBlockBytes<Pixel> : kBlockBytes<Pixel>,
                some.blocks, backward, backward ? nullptr : after},
               pixels);
      continue;
    }
    for (std::int32_t b = 0; b < some.blocks; ++b) {
      gather(in, pixels, some.x + std::int64_t{b} * kFusedColumns, y);
      fuseBand(tile, {block, kBlockBytes<Pixel>, 0, 1, false, nullptr}, pixels);
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

}  // namespace vblur
