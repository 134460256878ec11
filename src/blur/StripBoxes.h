// The three boxes of one pass over a strip of lines side by side, by vector code: rows of kRowBytes that
// hold one position of every line. Nothing is widened: see boxRows.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>

#include "blur/BoxRows.h"
#include "blur/PassRanges.h"
#include "image/HvCpu.h"
#include "image/HvTexture.h"
#include "image/Pixels.h"

namespace vblur {

// The pixels that strips are made of: four components of 8 or 16 bits.
template <class Pixel>
inline constexpr bool kHasStrips = std::is_same_v<Pixel, R8> || std::is_same_v<Pixel, R16>;

// A table of rows. Where they need not all be there at once, they share the memory of a ring: row i is that
// of i + ring() again.
template <class Component>
class StripRows {
 public:
  static constexpr std::size_t kLanes = kRowBytes / sizeof(Component);

  // `count` rows, of which `ring` consecutive ones are there at a time. No table where there is no memory.
  // The rows are zero, each at the beginning of a cache line.
  StripRows(std::int64_t count, std::int64_t ring) : ring_(std::min(count, ring)) {
    constexpr std::size_t kLine = 64;
    memory_.reset(static_cast<std::byte*>(std::calloc(static_cast<std::size_t>(ring_) + 1, kRowBytes)));
    if (memory_ != nullptr) table_.reset(new (std::nothrow) Component*[static_cast<std::size_t>(count) + 1]);
    if (table_ == nullptr) return;
    const auto at = reinterpret_cast<std::uintptr_t>(memory_.get());
    auto* first = reinterpret_cast<Component*>(memory_.get() + (kLine - at % kLine) % kLine);
    for (std::int64_t i = 0; i < count; ++i)
      table_[static_cast<std::size_t>(i)] = first + static_cast<std::size_t>(i % ring_) * kLanes;
  }

  bool isReady() const { return table_ != nullptr; }
  Component** table() const { return table_.get(); }
  Component* row(std::int64_t i) const { return table_[static_cast<std::size_t>(i)]; }
  // How many rows from row i on lie one behind the other in memory.
  std::int64_t together(std::int64_t i) const { return ring_ - i % ring_; }

 private:
  struct Free {
    void operator()(std::byte* memory) const { std::free(memory); }
  };
  std::int64_t ring_;
  std::unique_ptr<std::byte, Free> memory_;
  std::unique_ptr<Component*[]> table_;
};

// The rows of one thread for one pass. Between two strips nothing is allocated.
//
// The three boxes go along a strip together, a stretch of rows each in turn, so that what one leaves for the
// next is still in the nearest cache.
template <class Pixel>
class StripBoxes {
 public:
  using Component = ComponentOf<Pixel>;
  using Rows = StripRows<Component>;
  static constexpr std::int32_t kLines = static_cast<std::int32_t>(kRowBytes / sizeof(Pixel));
  // A multiple of the positions that are turned at once.
  static constexpr std::int64_t kStretch = 64;

  StripBoxes(const BoxConstants& box, const PassRanges& ranges)
      : box_(box),
        ranges_(ranges),
        read_(boxReach(ranges.first.first, ranges.first.last, box)),
        lead_(boxRowsRead(box, 0)),
        ring_((lead_ / kStretch + 3) * kStretch),
        gathered_(length(read_), ring_),
        once_(length(ranges.first), ring_),
        twice_(length(ranges.second), ring_),
        result_(length(ranges.last), ring_) {}

  bool isReady() const { return gathered_.isReady() && once_.isReady() && twice_.isReady() && result_.isReady(); }

  // The positions that the first box reads, and rows for them, for lines that have to be gathered.
  const BoxReach& read() const { return read_; }
  const Rows& gathered() const { return gathered_; }
  // The positions that the last box produces, and the rows that they go to unless told otherwise.
  const BoxReach& produced() const { return ranges_.last; }
  const Rows& result() const { return result_; }

  // `in` has the rows of read(), `out` those of produced(). Calls need(first, last) before rows of `in` are
  // read for the first time, and done(first, last) when rows of `out` are there, both by their place in the
  // table and in stretches one behind the other.
  template <class Need, class Done>
  void run(const Component* const* in, Component* const* out, const Need& need, const Done& done) const {
    HvCountVectorCall();
    const std::int64_t firstCount = length(ranges_.first);
    const std::int64_t secondCount = length(ranges_.second);
    const std::int64_t lastCount = length(ranges_.last);
    // Where in the rows of the box before the first row of a box begins to read.
    const std::int64_t secondBegins = begins(ranges_.second, ranges_.first);
    const std::int64_t lastBegins = begins(ranges_.last, ranges_.second);
    BoxRowsSums sums[3];
    std::int64_t there = 0;
    std::int64_t once = 0;
    std::int64_t twice = 0;
    for (std::int64_t thrice = 0; thrice < lastCount;) {
      const std::int64_t stretch = std::min(kStretch, firstCount - once);
      const std::int64_t wanted = once + stretch + lead_;
      need(there, wanted);
      there = wanted;
      boxRows(box_, sums[0], stretch, length(read_) - once, in + once, once_.table() + once);
      once += stretch;
      const std::int64_t second = std::clamp<std::int64_t>(once - secondBegins - lead_, twice, secondCount);
      if (second > twice) {
        boxRows(box_, sums[1], second - twice, firstCount - secondBegins - twice, once_.table() + secondBegins + twice,
                twice_.table() + twice);
      }
      twice = second;
      const std::int64_t last = std::clamp<std::int64_t>(twice - lastBegins - lead_, thrice, lastCount);
      if (last > thrice) {
        boxRows(box_, sums[2], last - thrice, secondCount - lastBegins - thrice, twice_.table() + lastBegins + thrice,
                out + thrice);
        done(thrice, last);
      }
      thrice = last;
    }
  }

 private:
  static std::int64_t length(const BoxReach& range) { return std::max<std::int64_t>(range.last - range.first, 0); }
  std::int64_t begins(const BoxReach& range, const BoxReach& before) const {
    return boxReach(range.first, range.last, box_).first - before.first;
  }

  BoxConstants box_;
  PassRanges ranges_;
  BoxReach read_;
  std::int64_t lead_;
  std::int64_t ring_;
  Rows gathered_;
  Rows once_;
  Rows twice_;
  Rows result_;
};

}  // namespace vblur
