// Both passes of the filter in one, over a tile of columns: vector code for one band of rows after the other. Between
// the passes the picture stays in the caches.
//
// A band is as many rows as a cache line has pixels. It is transposed a block of kFusedColumns at a time, so that a row
// of 64 bytes holds one position of all its lines, and goes through the boxes along x. Each block of results is
// transposed back into groups of columns, one cache line wide, and every kFusedRows rows each group goes through the
// boxes along y. The rings and sums of a group lie together.
#pragma once

#include <cstddef>
#include <cstdint>

#include "blur/BoxConstants.h"
#include "blur/BoxSweep.h"
#include "blur/ExactBox.h"

namespace vblur {

// Positions that go through the boxes along x together, and rows along y.
inline constexpr std::int32_t kFusedColumns = 32;
inline constexpr std::int32_t kFusedRows = 16;

// A row of a band or of a group: one cache line.
inline constexpr std::size_t kFusedLine = 64;
// The sums of three boxes over such a row, and a slot of their rings, in bytes at most. Rings along y hold packed
// components. Floats have three rings of 64-bit numbers.
inline constexpr std::size_t kFusedSums = 3 * 4 * kFusedLine;
inline constexpr std::size_t kFusedSlot = 6 * kFusedLine;

// Columns of a band by columns of a group.
template <class Pixel>
inline constexpr auto kFusedPixels = static_cast<std::int32_t>(kFusedLine / sizeof(Pixel));

// Where the three boxes along an axis are. Before them is a ring of rows of kFusedLine bytes, a whole number of blocks.
struct FusedAxis {
  // Blocks of `block` rows. `merges`: results take components of the row at their position, which the ring must hold.
  FusedAxis(const BoxShape& shape, std::int32_t block, bool merges)
      : rowsOfBlock(block),
        taps(static_cast<std::int32_t>(BoxSweep::taps(shape))),
        behind(static_cast<std::int32_t>(BoxSweep::behind(shape))),
        ring(((merges ? behind : taps) + block - 1) / block * block + block),
        leadBlocks((3 * taps + block - 1) / block),
        phase(leadBlocks * block - 3 * taps) {}

  void begin() { blocks = row = 0; }
  void endBlock() {
    ++blocks;
    row = row + rowsOfBlock == ring ? 0 : row + rowsOfBlock;
  }
  // The step of the first row of the block.
  std::int32_t step() const { return blocks * rowsOfBlock - phase; }
  bool produces() const { return blocks >= leadBlocks; }

  std::int32_t rowsOfBlock;
  std::int32_t taps;
  std::int32_t behind;  // rows from that of a result to the newest
  std::int32_t ring;
  std::int32_t leadBlocks;  // blocks before the first result
  std::int32_t phase;       // rows of the first block that are left out, so that results come in whole blocks
  std::int32_t blocks = 0;  // blocks that are done
  std::int32_t row = 0;     // the next block's first row in the ring
};

// A tile of columns, its memory and its state.
template <class Box>
struct FusedTile {
  Box boxX{};
  Box boxY{};
  FusedAxis x;
  FusedAxis y;
  // Bits of results outside the mask become those of the source.
  bool merges = false;
  // What the sums and slots of floats are: doubles until a component beyond kMostInDoubles is read.
  bool inDoubles = false;
  alignas(kFusedLine) std::byte mask[kFusedLine] = {};
  alignas(kFusedLine) std::byte sums[kFusedSums] = {};  // along x

  std::byte* gathered = nullptr;  // the ring before the boxes along x
  std::byte* slotsX = nullptr;
  std::byte* results = nullptr;  // a block of results along x
  std::byte* groups = nullptr;   // each: sums, the ring before the boxes along y, slots
  std::size_t groupBytes = 0;
  std::int32_t groupCount = 0;

  // This band's first row within the block of rows that goes through the boxes along y, and whether it is the last band
  // of it.
  std::int32_t rowInBlock = 0;
  bool completes = false;
  // Rows at the upper or lower edge of the source, kept after the boxes along x for their mirror images: keptRows of
  // each group.
  std::byte* kept = nullptr;
  std::int32_t keptRows = 0;
  // This band's rows to keep: `keeps` from row keepsFrom of the band on, to row keptAt.
  std::int32_t keeps = 0;
  std::int32_t keepsFrom = 0;
  std::int32_t keptAt = 0;
  bool keepsOnly = false;  // and nothing else

  // The results of this block: the first pixel of group 0, how many rows there are.
  std::byte* target = nullptr;
  std::int64_t stride = 0;
  std::int32_t rows = 0;
  bool streams = false;  // past the caches
  // Groups that are not whole in the picture, -1 for none; their results go to `partial`, kFusedRows lines each.
  std::int32_t partialFirst = -1;
  std::int32_t partialLast = -1;
  std::byte* partial = nullptr;
};

// Blocks of a band that lie side by side in the source.
struct FusedStretch {
  const std::byte* first;  // the first line's first pixel of the first block; its last one if backward
  std::int64_t lineBytes;
  std::int64_t blockBytes;  // from one block to the next
  std::int32_t blocks;
  bool backward;
  // What is read after the last block, to prefetch; null for nothing. The same distance between lines.
  const std::byte* after;
};

// Filters the blocks of a stretch, which follow those of the last call. Pixels of four components.
void fuseBand8(FusedTile<BoxConstants>& tile, const FusedStretch& stretch);
void fuseBand16(FusedTile<BoxConstants>& tile, const FusedStretch& stretch);
void fuseBand32(FusedTile<ExactBox>& tile, const FusedStretch& stretch);

// A band whose rows are kept: row i is row keptAt[i]. One for each pixel of a cache line.
void fuseKeptBand8(const FusedTile<BoxConstants>& tile, const std::int32_t* keptAt);
void fuseKeptBand16(const FusedTile<BoxConstants>& tile, const std::int32_t* keptAt);
void fuseKeptBand32(const FusedTile<ExactBox>& tile, const std::int32_t* keptAt);

}  // namespace vblur
