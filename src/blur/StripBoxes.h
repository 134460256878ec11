// The three boxes of one pass over a strip of lines by vector code. Row i of a strip holds position i of every line.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

#include "blur/BoxSweep.h"
#include "blur/PassRanges.h"
#include "image/HvMemory.h"
#include "image/Pixels.h"

namespace vblur {

// Positions that are gathered, filtered and written together, so that they stay in the L1 cache.
inline constexpr std::int64_t kStripTile = 64;

// A table of rows in the memory of a ring: rows i and i + ring are the same.
template <class Component>
class StripRows {
 public:
  // `count` rows, `ring` of them, a multiple of kStripTile, in memory at a time. The first tile lacks its first `phase`
  // rows.
  StripRows(std::int64_t count, std::int64_t ring, std::int64_t phase, std::size_t rowBytes)
      : phase_(phase),
        note_(static_cast<std::size_t>(ring) * rowBytes + static_cast<std::size_t>(count) * sizeof(Component*)) {
    const std::size_t bytes = static_cast<std::size_t>(ring) * rowBytes;
    memory_.reset(static_cast<std::byte*>(::operator new (bytes, std::align_val_t{kSweepUnit}, std::nothrow)));
    // Lanes beyond the last line are filtered too.
    if (memory_ != nullptr) std::memset(memory_.get(), 0, bytes);
    if (memory_ != nullptr) table_.reset(new (std::nothrow) Component*[static_cast<std::size_t>(count) + 1]);
    if (table_ == nullptr) return;
    for (std::int64_t i = 0; i < count; ++i) {
      table_[static_cast<std::size_t>(i)] =
          reinterpret_cast<Component*>(memory_.get() + static_cast<std::size_t>((i + phase_) % ring) * rowBytes);
    }
  }

  bool isReady() const { return table_ != nullptr; }
  Component** table() const { return table_.get(); }
  Component* row(std::int64_t i) const { return table_[static_cast<std::size_t>(i)]; }
  // Rows from row i to the end of its tile.
  std::int64_t together(std::int64_t i) const { return kStripTile - (i + phase_) % kStripTile; }

 private:
  struct Free {
    void operator()(std::byte* memory) const { ::operator delete (memory, std::align_val_t{kSweepUnit}); }
  };
  std::int64_t phase_;
  HvMemoryNote note_;
  std::unique_ptr<std::byte, Free> memory_;
  std::unique_ptr<Component*[]> table_;
};

// The positions that three boxes read to produce the positions of a range.
inline BoxReach stripReach(const BoxReach& produced, const BoxShape& box) {
  const std::int64_t first = produced.first - BoxSweep::centre(box);
  return {first, first + (produced.last - produced.first) + 3 * BoxSweep::taps(box)};
}

// The rows of one thread for one pass, allocated once for all its strips.
template <class Component>
class StripBoxes {
 public:
  using Rows = StripRows<Component>;

  // Tiles of gathered rows end at `tileEnd` and every kStripTile positions from there. The results of one tile are kept
  // at a time. `kept` is a pixel with the filtered bits set: all others become those of the input. Null: all bits are
  // filtered.
  template <class Box, class Pixel>
  StripBoxes(const Box& box, const BoxReach& produced, std::size_t rowBytes, std::int64_t tileEnd, const Pixel* kept)
      : read_(stripReach(produced, box)),
        sweep_(box, rowBytes, sizeof(Component)),
        gathered_(read_.last - read_.first, ringFor(kept == nullptr ? BoxSweep::readsBack(box) : BoxSweep::behind(box)),
                  phase(read_.first - tileEnd), rowBytes),
        result_(produced.last - produced.first, ringFor(0), 0, rowBytes) {
    if (kept != nullptr) sweep_.keepOthers(reinterpret_cast<const std::byte*>(kept), sizeof(Pixel));
  }

  bool isReady() const { return gathered_.isReady() && result_.isReady() && sweep_.isReady(); }

  // The positions that the first box reads, and the rows for them.
  const BoxReach& read() const { return read_; }
  const Rows& gathered() const { return gathered_; }
  // Rows for the positions that the last box produces, if they are not written to their target directly.
  const Rows& result() const { return result_; }

  // `out` has the rows that the last box produces. Calls gather(first, last) before rows of gathered() are read, and
  // done(first, last) after rows of `out` are written, tile after tile. gather returns whether there are floats beyond
  // kMostInDoubles among those rows; so does run among all. prefetch(first, last, ahead) fills in
  // kStripTile addresses that gather will read for a range and returns the cache lines to prefetch at each, 0 for none.
  // `streams`: see SweepRows.
  template <class Gather, class Prefetch, class Done>
  bool run(Component* const* out, bool streams, const Gather& gather, const Prefetch& prefetch, const Done& done) {
    const std::int64_t end = read_.last - read_.first;
    const std::int64_t lead = sweep_.lead();
    std::int64_t stretch = gathered_.together(0);
    const std::byte* ahead[kStripTile];
    SweepRows rows{0, 0, streams, false, nullptr, 0};
    for (; rows.to < end; stretch = kStripTile) {
      rows.from = rows.to;
      rows.to = std::min(end, rows.from + stretch);
      if (gather(rows.from, rows.to)) rows.large = true;
      rows.aheadLines = prefetch(rows.to, std::min(end, rows.to + kStripTile), ahead);
      rows.ahead = rows.aheadLines > 0 ? ahead : nullptr;
      sweep_.advance(rows, gathered_.table(), out);
      if (rows.to > lead) done(std::max(rows.from, lead) - lead, rows.to - lead);
    }
    return rows.large;
  }

 private:
  static std::int64_t phase(std::int64_t position) {
    const std::int64_t rest = position % kStripTile;
    return rest < 0 ? rest + kStripTile : rest;
  }
  // Rows of a stretch and `kept` rows before it, in whole tiles.
  static std::int64_t ringFor(std::int64_t kept) { return (kept / kStripTile + 3) * kStripTile; }

  BoxReach read_;
  BoxSweep sweep_;
  Rows gathered_;
  Rows result_;
};

}  // namespace vblur
