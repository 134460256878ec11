// One box of the filter over rows of components that lie side by side: the vector form of filterBox for
// pixels of 8 and of 16 bits. Position i of the line that a lane belongs to is in row i; a step adds one row
// to the sums of all lanes and takes one away.
//
// No result leaves the range of the pixels: a box's scale is truncated, so that its gain is at most 1. So
// rows hold components of the pixel's own type between one box and the next, and nothing is narrowed.
#pragma once

#include <cstddef>
#include <cstdint>

#include "blur/BoxConstants.h"

namespace vblur {

// What a row holds, whatever the instruction set.
inline constexpr std::size_t kRowBytes = 128;

// Whether a box is of the kind that boxRows knows: of some weight, and of a gain that is not above 1, as it
// is for fractions below zero.
constexpr bool boxRowsKnow(const BoxConstants& box) {
  return box.r >= 0 && box.frac >= 0 && box.scale > 0 && box.scale <= 16384;
}

// Rows that a box reads to produce `count` rows.
constexpr std::int64_t boxRowsRead(const BoxConstants& box, std::int64_t count) {
  return count + 2 * static_cast<std::int64_t>(box.r) + box.d + 1;
}

// The sums of all lanes between one stretch of rows and the next; private to boxRows. A box begins with a
// new one.
struct BoxRowsSums {
  alignas(64) std::byte lanes[kRowBytes * sizeof(std::int32_t)];
  bool begun = false;
};

// Produces rows 0 to count - 1 of `out` from rows 0 to boxRowsRead(box, count) - 1 of `in`, of which row k
// lies r + d positions before row k of `out`. A box may be carried on where it stopped: the next stretch has
// the same sums and both tables moved on by `count`. No row of `out` may be one of those of `in`.
// `known` rows of `in`, at least those that are read, may be asked for ahead of time.
void boxRows(const BoxConstants& box, BoxRowsSums& sums, std::int64_t count, std::int64_t known,
             const std::uint8_t* const* in, std::uint8_t* const* out);
void boxRows(const BoxConstants& box, BoxRowsSums& sums, std::int64_t count, std::int64_t known,
             const std::int16_t* const* in, std::int16_t* const* out);

}  // namespace vblur
