// Writes pieces of rows past the caches, wherever the rows begin within a cache line: an incomplete line at the end of
// a piece is kept until the next piece of the row completes it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vblur {

inline constexpr std::size_t kCacheLineBytes = 64;
// The longest piece.
inline constexpr std::size_t kMostStreamedBytes = 256;

// One piece of each of `count` rows, to the right of the previous call's pieces.
struct StreamedPiece {
  std::byte* first;     // the target of the first row's piece
  std::int64_t stride;  // from one row to the next, in bytes
  std::int64_t count;
  std::size_t bytes;  // of the piece of each row, at most kMostStreamedBytes
  bool begins;        // the first piece: nothing is kept from before
  bool ends;          // the last piece: nothing is kept
};

// rows[i] is the piece of row i, of at least a cache line unless it is the last one. `waiting` keeps a cache line for
// each row from call to call. The caller calls hwy::FlushStream at the end.
void streamRows(const StreamedPiece& piece, const std::byte* const* rows, std::byte* waiting);

}  // namespace vblur
