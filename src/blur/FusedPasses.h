// Both passes of the filter in one, by vector code, for pictures whose result is stored elsewhere than the source. The
// window is divided into tiles that threads take one after the other; see FuseBand.h for what happens within one.
//
// Rows and columns around a tile are filtered along x again by its neighbours. So tiles are as large as the second
// cache holds their rings, and there is a radius from which two passes (StripPasses.h) are faster.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "blur/BoxFilter.h"
#include "blur/FuseBand.h"
#include "blur/FusedPlan.h"
#include "blur/LineBlock.h"
#include "blur/StripPasses.h"
#include "image/HvInteruptable.h"
#include "image/HvScratch.h"
#include "image/HvTexture.h"

namespace vblur {

// The pixels that have both passes in one.
template <class Pixel>
inline constexpr bool kFuses = std::is_same_v<Pixel, R8> || std::is_same_v<Pixel, R16> || std::is_same_v<Pixel, Rf>;

// One run over one picture, shared by all threads. Instances: R8 and R16 with Ri, Rf with Rf.
template <class Pixel, class Accum>
class FusedPasses {
 public:
  using Texture = HvTexture<Pixel, Accum>;

  // Whether the boxes and the pictures allow it: no pixel of the result may be one of the source.
  // Arguments as those of StripPasses.
  static bool fits(const Texture& in, const Texture& out, const BoxOf<Pixel>& boxX, const BoxOf<Pixel>& boxY,
                   const StripChannels<Pixel>& channels, bool keepsOthers);

  FusedPasses(const Texture& out, const BoxOf<Pixel>& boxX, const BoxOf<Pixel>& boxY, const BoxReach& columns,
              const BoxReach& rows, const StripChannels<Pixel>& channels, std::int32_t threads);

  // Whether it is faster than two passes.
  bool pays() const { return plan_.pays; }
  // Other tiles than planned, with the same results: at least 1 each way.
  void divide(std::int32_t columns, std::int32_t rows) {
    plan_.columns = columns;
    plan_.rows = rows;
  }
  // Whether results go past the caches, whatever the size of the window; never those of rows at any alignment.
  void streams(bool streams) { streams_ = streams && lined_; }
  // Filters tiles until there are no more. At once on any number of threads; false when there is no memory.
  bool run(const Texture& in, const Texture& out, HvInterruptRecord* interrupt);

 private:
  using Tile = FusedTile<BoxOf<Pixel>>;
  static constexpr std::int32_t kPixels = kFusedPixels<Pixel>;
  static constexpr auto kPixelBytes = static_cast<std::int64_t>(sizeof(Pixel));

  // Blocks of columns, all of a kind.
  struct Columns {
    enum Kind { kForward, kBackward, kGathered };
    Kind kind;
    std::int32_t index;  // in the source, of the first pixel in memory of the first block
    std::int32_t blocks;
  };
  // The rows of a band: where in the source, one step apart.
  struct Rows {
    const std::byte* first;  // column 0 of the source's buffer
    std::int64_t bytes;      // from one to the next
    bool together;
    bool outside;
  };

  // What the bands of a tile are read from.
  struct Band {
    const Texture& in;
    std::byte* block;   // for pixels that cannot be read directly
    std::int64_t left;  // in image coordinates
    std::int32_t blocks;
  };
  // The source's rows that are kept after the boxes along x, and how many are to be kept at either edge.
  struct KeptRows {
    bool have(const Texture& in, std::int64_t y, std::int32_t* at) const;

    std::int32_t first = 0;  // in the source's buffer
    std::int32_t count = 0;
    std::int32_t above = 0;
    std::int32_t below = 0;
  };
  // The most rows beyond an edge that a tile reads.
  std::int32_t mostKept() const {
    return static_cast<std::int32_t>((BoxSweep::centre(boxY_) / kFusedRows + 3) * kFusedRows);
  }

  // Without memory and place.
  Tile emptyTile() const;
  void filterTile(const Texture& in, const Texture& out, Tile& tile, std::byte* block, std::int32_t number,
                  HvInterruptRecord* interrupt) const;
  static Columns columnsAt(const Texture& in, std::int64_t x, std::int32_t most);
  Rows rowsOf(const Texture& in, std::int64_t y) const;
  KeptRows keptRows(const Texture& in, std::int64_t top, std::int64_t end) const;
  bool keepAbove(const Band& band, Tile& tile, KeptRows& kept, HvInterruptRecord* interrupt) const;
  void keepBelow(const Texture& in, std::int64_t y, Tile& tile, KeptRows& kept) const;
  void filterBand(const Band& band, Tile& tile, std::int64_t y) const;
  void gather(const Texture& in, Pixel* block, std::int64_t x, std::int64_t y) const;
  void scatterPartial(const Texture& out, const Tile& tile, std::int64_t x, std::int64_t y) const;

  BoxOf<Pixel> boxX_;
  BoxOf<Pixel> boxY_;
  BoxReach columns_;
  BoxReach rows_;
  StripChannels<Pixel> channels_;
  bool lined_ = false;  // all rows of the result lie alike in cache lines
  bool streams_ = false;
  std::int32_t before_;  // pixels of the first group before the window
  std::int32_t groups_;
  FusedPlan plan_;
  std::atomic<std::int32_t> next_{0};
};

}  // namespace vblur
