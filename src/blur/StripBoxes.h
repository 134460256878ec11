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
#include "image/HvTexture.h"
#include "image/Pixels.h"

namespace vblur {

// The pixels that strips are made of: four components of 8 or 16 bits.
template <class Pixel>
inline constexpr bool kHasStrips = std::is_same_v<Pixel, R8> || std::is_same_v<Pixel, R16>;

// Rows one behind the other, each at the beginning of a cache line, and a table of them.
template <class Component>
class StripRows {
 public:
  static constexpr std::size_t kLanes = kRowBytes / sizeof(Component);

  // Null tables where there is no memory. The rows are zero.
  explicit StripRows(std::int64_t count) {
    constexpr std::size_t kLine = 64;
    const auto rows = static_cast<std::size_t>(count);
    memory_.reset(static_cast<std::byte*>(std::calloc(rows + 1, kRowBytes)));
    if (memory_ != nullptr) table_.reset(new (std::nothrow) Component*[rows + 1]);
    if (table_ == nullptr) return;
    const auto at = reinterpret_cast<std::uintptr_t>(memory_.get());
    auto* first = reinterpret_cast<Component*>(memory_.get() + (kLine - at % kLine) % kLine);
    for (std::size_t i = 0; i < rows; ++i)
      table_[i] = first + i * kLanes;
  }

  bool isReady() const { return table_ != nullptr; }
  Component** table() const { return table_.get(); }
  Component* row(std::int64_t i) const { return table_[static_cast<std::size_t>(i)]; }

 private:
  struct Free {
    void operator()(std::byte* memory) const { std::free(memory); }
  };
  std::unique_ptr<std::byte, Free> memory_;
  std::unique_ptr<Component*[]> table_;
};

// The rows of one thread for one pass. Between two strips nothing is allocated.
template <class Pixel>
class StripBoxes {
 public:
  using Component = ComponentOf<Pixel>;
  using Rows = StripRows<Component>;
  static constexpr std::int32_t kLines = static_cast<std::int32_t>(kRowBytes / sizeof(Pixel));

  StripBoxes(const BoxConstants& box, const PassRanges& ranges)
      : box_(box),
        ranges_(ranges),
        read_(boxReach(ranges.first.first, ranges.first.last, box)),
        even_(std::max(length(read_), length(ranges.second))),
        odd_(std::max(length(ranges.first), length(ranges.last))) {}

  bool isReady() const { return even_.isReady() && odd_.isReady(); }

  // The positions that the first box reads, and rows for them, for lines that have to be gathered.
  const BoxReach& read() const { return read_; }
  const Rows& gathered() const { return even_; }
  // The positions that the last box produces, and the rows that they go to unless told otherwise.
  const BoxReach& produced() const { return ranges_.last; }
  const Rows& result() const { return odd_; }

  // `in` has the rows of read(), `out` those of produced(). Each box reads what the one before has left
  // in one of two sets of rows and writes the other, so `in` may be gathered() and `out` result().
  void run(const Component* const* in, Component* const* out) const {
    boxRows(box_, length(ranges_.first), in, odd_.table(), Rows::kLanes);
    boxRows(box_, length(ranges_.second), rowsFor(odd_, ranges_.second, ranges_.first), even_.table(), Rows::kLanes);
    boxRows(box_, length(ranges_.last), rowsFor(even_, ranges_.last, ranges_.second), out, Rows::kLanes);
  }

 private:
  static std::int64_t length(const BoxReach& range) { return std::max<std::int64_t>(range.last - range.first, 0); }

  // What a box reads of the rows that the one before has left.
  const Component* const* rowsFor(const Rows& rows, const BoxReach& range, const BoxReach& before) const {
    return rows.table() + (boxReach(range.first, range.last, box_).first - before.first);
  }

  BoxConstants box_;
  PassRanges ranges_;
  BoxReach read_;
  Rows even_;
  Rows odd_;
};

}  // namespace vblur
