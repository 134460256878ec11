// How rows (or columns) are shared among the threads of a run, and which rows a field has.
#pragma once

#include <algorithm>
#include <cstdint>

#include "image/HvThreads.h"

namespace vblur {

// Whole pixels first to last - 1.
struct HvSpan {
  std::int32_t first = 0;
  std::int32_t last = 0;

  friend bool operator==(const HvSpan&, const HvSpan&) = default;
};

// The band of one thread: contiguous, of equal size but for the last thread, which takes the rest. With
// more threads than rows the later threads get nothing (first is then at or above last).
constexpr HvSpan bandOf(std::int32_t rows, std::int32_t threads, std::int32_t thread) {
  if (thread < 0 || threads < 1) return {0, rows};
  const std::int64_t share = (static_cast<std::int64_t>(rows) + threads - 1) / threads;
  const std::int64_t first = share * thread;
  const std::int64_t last = thread == threads - 1 ? rows : std::min<std::int64_t>(share + first, rows);
  return {static_cast<std::int32_t>(first), static_cast<std::int32_t>(last)};
}

// Which rows a processor works on.
enum HvFieldMode : std::int32_t { kAllRows = 0, kEvenRows = 1, kOddRows = 2 };

// The first row of a field at or after y; for odd rows, the odd row of the pair that y lies in.
constexpr std::int32_t firstFieldRow(std::int32_t fieldMode, std::int32_t y) {
  if (fieldMode == kEvenRows) return y + (y & 1);
  if (fieldMode == kOddRows) return y / 2 * 2 + 1;
  return y;
}

constexpr std::int32_t fieldRowStep(std::int32_t fieldMode) {
  return fieldMode == kAllRows ? 1 : 2;
}

}  // namespace vblur
