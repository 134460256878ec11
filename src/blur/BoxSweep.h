// The three boxes of a pass in one sweep over rows of components that lie side by side: the vector form of
// ThreeBoxes. Position i of the line that a lane belongs to is in row i; a step takes one more row in and
// gives one more row out, and what the first and the second box leave for the next waits in two small rings.
//
// No result leaves the range of the pixels: a box's scale is truncated, so that its gain is at most 1. So
// nothing is narrowed between one box and the next, and 8-bit components fit lanes of 16 bits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "blur/BoxConstants.h"
#include "image/HvMemory.h"

namespace vblur {

// Rows are a multiple of the widest vector, at most so many of them.
inline constexpr std::size_t kSweepUnit = 64;
inline constexpr std::size_t kMostRowBytes = 256;

// Whether a box is of the kind that a sweep knows: of some weight, and of a gain that is not above 1, as it
// is for fractions below zero.
constexpr bool sweepKnows(const BoxConstants& box) {
  return box.r >= 0 && box.frac >= 0 && box.scale > 0 && box.scale <= 16384;
}

// The same box without end taps that have no weight.
constexpr BoxConstants withWeightyEnds(BoxConstants box) {
  if (box.frac == 0) box.d = 0;
  return box;
}

// How a sweep goes over its rows.
struct SweepRows {
  std::int64_t from = 0;  // steps done
  std::int64_t to = 0;    // steps to have done
  bool streams = false;   // results are not read again soon: past the caches; their rows begin with a vector
  // Memory that will be read after these steps, to be asked for in the course of them: a place for each of the
  // steps, with so many cache lines. Null: none.
  const std::byte* const* ahead = nullptr;
  std::size_t aheadLines = 0;
};

// One thread's running sums and rings for strips of lines; private to advance.
class BoxSweep {
 public:
  // Three times the same box, whose end taps have weight; rows of rowBytes; components of 1, 2 or 4 bytes.
  BoxSweep(const BoxConstants& box, std::size_t rowBytes, std::size_t componentBytes);

  bool isReady() const { return rings_ != nullptr; }
  // Results have those bits of the filtered row that the mask has set, and else those of the row of the input that
  // they belong to, which must be there still: `bytes` of the mask, a power of two up to kSweepUnit, over and over.
  void keepOthers(const std::byte* mask, std::size_t bytes);
  // Rows that one box holds in its sum; the rows of the input that lie before and after its result are
  // three times as many.
  static std::int64_t taps(const BoxConstants& box) { return 2 * static_cast<std::int64_t>(box.r) + 1 + box.d; }
  // Where the row of the input that belongs to the first result is.
  static std::int64_t centre(const BoxConstants& box) { return 3 * (static_cast<std::int64_t>(box.r) + box.d); }
  // By how many rows the newest of the input is behind the one that a result belongs to.
  static std::int64_t behind(const BoxConstants& box) { return 3 * taps(box) - centre(box); }
  // Whether a step writes whole cache lines, as it has to where results are streamed: otherwise the parts of a
  // line would go to memory one by one.
  static bool fillsLines(std::size_t componentBytes);
  // Steps before the first result.
  std::int64_t lead() const { return 3 * taps(box_); }

  // Steps rows.from to rows.to - 1 of a strip; a strip begins with step 0. Step j reads row j of `in` and
  // row j - taps, and from step lead() on it writes row j - lead() of `out`. No row of `out` may be one of
  // those of `in` that are still read.
  void advance(const SweepRows& rows, const std::uint8_t* const* in, std::uint8_t* const* out);
  void advance(const SweepRows& rows, const std::int16_t* const* in, std::int16_t* const* out);
  void advance(const SweepRows& rows, const std::int32_t* const* in, std::int32_t* const* out);

  // What the vector code works on.
  struct State {
    // Three boxes, each with at most four bytes for each byte of a row.
    alignas(kSweepUnit) std::byte sums[3 * 4 * kMostRowBytes];
    std::byte* rings = nullptr;
    std::size_t rowBytes = 0;
    std::int64_t slot = 0;
    std::int64_t taps = 0;
    std::int64_t behind = 0;
    alignas(kSweepUnit) std::byte mask[kSweepUnit];
    bool merges = false;
  };

 private:
  struct Free {
    void operator()(std::byte* memory) const { std::free(memory); }
  };
  template <class C>
  bool copied(const SweepRows& rows, const C* const* in, C* const* out) const;

  BoxConstants box_;
  HvMemoryNote note_;
  std::unique_ptr<std::byte, Free> rings_;
  State state_;
};

}  // namespace vblur
