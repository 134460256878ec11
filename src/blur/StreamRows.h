// Writes pieces of rows past the caches where the rows of a picture begin anywhere within a cache line: what
// a line lacks at its end waits for the next piece of the row.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vblur {

inline constexpr std::size_t kCacheLineBytes = 64;
// The longest piece.
inline constexpr std::size_t kMostStreamedBytes = 256;

// One piece of `count` rows, which lie side by side with the pieces of the call before.
struct StreamedPiece {
  std::byte* first;     // where the piece of the first row belongs
  std::int64_t stride;  // from one row to the next, in bytes
  std::int64_t count;
  std::size_t bytes;  // of the piece of each row, at most kMostStreamedBytes
  bool begins;        // nothing waits: the rows' pieces to the left are somebody else's
  bool ends;          // nothing will follow
};

// rows[i] is the piece of row i; one that does not end is at least a cache line. `waiting` has a cache line for each
// row, the same for all pieces of the rows. Callers fence: see hwy::FlushStream.
void streamRows(const StreamedPiece& piece, const std::byte* const* rows, std::byte* waiting);

}  // namespace vblur
