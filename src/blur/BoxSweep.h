// The three boxes of a pass in one sweep over rows of components: the vector form of ThreeBoxes. A lane is a line, row
// i holds position i of every line. A step reads one row and writes one; the results of the first two boxes go to the
// next box through a ring each.
//
// Integer results keep the range of the pixels, because a box's gain is at most 1. So nothing is narrowed between two
// boxes, and 8-bit components fit lanes of 16 bits. Floats are summed in 64-bit integers, or in doubles while none are
// large; those whose results count are carried ones (ExactBox.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

#include "blur/BoxConstants.h"
#include "blur/ExactBox.h"
#include "image/HvMemory.h"

namespace vblur {

// Rows are a multiple of the widest vector, up to kMostRowBytes.
inline constexpr std::size_t kSweepUnit = 64;
inline constexpr std::size_t kMostRowBytes = 256;

// Whether a sweep can run a box: a scale above 0 and a gain of at most 1, which fractions below zero exceed.
constexpr bool sweepKnows(const BoxConstants& box) {
  return box.r >= 0 && box.frac >= 0 && box.scale > 0 && box.scale <= 16384;
}

// A radius from 0 up, which is no NaN.
constexpr bool sweepKnows(const ExactBox& box) {
  return box.r >= 0;
}

// The same box without end taps of weight 0.
constexpr BoxConstants withWeightyEnds(BoxConstants box) {
  if (box.frac == 0) box.d = 0;
  return box;
}
constexpr ExactBox withWeightyEnds(const ExactBox& box) {
  return box;
}

// Some steps of a sweep.
struct SweepRows {
  std::int64_t from = 0;
  std::int64_t to = 0;   // past the end
  bool streams = false;  // results go past the caches; their rows are vector-aligned
  // Floats beyond kMostInDoubles may be among the rows of `in` from here on, in this and all later calls for the strip.
  bool large = true;
  // Addresses to prefetch, one for each step, of aheadLines cache lines each. Null: none.
  const std::byte* const* ahead = nullptr;
  std::size_t aheadLines = 0;
};

// The running sums and rings of one thread.
class BoxSweep {
 public:
  // A box as withWeightyEnds returns it; integer components of 1, 2 or 4 bytes.
  BoxSweep(const BoxConstants& box, std::size_t rowBytes, std::size_t componentBytes);
  // The same for floats.
  BoxSweep(const ExactBox& box, std::size_t rowBytes, std::size_t componentBytes);

  bool isReady() const { return rings_ != nullptr; }
  // Bits of results outside the mask become those of the input row at the same position, which must still be in memory.
  // The mask repeats every `bytes`, a power of two up to kSweepUnit.
  void keepOthers(const std::byte* mask, std::size_t bytes);
  // Rows in the sum of one box. The three boxes together read three times as many around a result.
  static std::int64_t taps(const BoxShape& box) { return 2 * static_cast<std::int64_t>(box.r) + 1 + box.d; }
  // How many rows before the newest one a step reads: floats are kept.
  static std::int64_t readsBack(const BoxConstants& box) { return taps(box); }
  static std::int64_t readsBack(const ExactBox& /*box*/) { return 0; }
  // The input row at the position of the first result.
  static std::int64_t centre(const BoxShape& box) { return 3 * (static_cast<std::int64_t>(box.r) + box.d); }
  // From the input row at the position of a result to the newest input row.
  static std::int64_t behind(const BoxShape& box) { return 3 * taps(box) - centre(box); }
  // Whether a step writes whole cache lines. Partial lines must not be streamed: each part would be a separate write.
  static bool fillsLines();
  // Steps before the first result.
  std::int64_t lead() const { return 3 * state_.taps; }

  // Steps rows.from to rows.to - 1 of a strip; step 0 begins a strip. Step j reads rows j and j - readsBack() of `in`,
  // and from step lead() on writes row j - lead() of `out`. Rows of `out` must not be rows of `in` that are read later.
  void advance(const SweepRows& rows, const std::uint8_t* const* in, std::uint8_t* const* out);
  void advance(const SweepRows& rows, const std::int16_t* const* in, std::int16_t* const* out);
  void advance(const SweepRows& rows, const std::int32_t* const* in, std::int32_t* const* out);
  void advance(const SweepRows& rows, const float* const* in, float* const* out);

  // The state of the vector code.
  struct State {
    // Of three boxes: at most four bytes for each byte of a row.
    alignas(kSweepUnit) std::byte sums[3 * 4 * kMostRowBytes];
    alignas(kSweepUnit) std::byte mask[kSweepUnit];
    std::byte* rings = nullptr;
    std::size_t ringBytes = 0;
    std::size_t rowBytes = 0;
    std::int64_t slot = 0;
    std::int64_t taps = 0;
    std::int64_t behind = 0;
    bool merges = false;
    bool inDoubles = false;  // what the sums and rings of floats are
  };

 private:
  struct Free {
    void operator()(std::byte* memory) const { ::operator delete (memory, std::align_val_t{kSweepUnit}); }
  };
  template <class C>
  bool copied(const SweepRows& rows, const C* const* in, C* const* out) const;

  BoxSweep(const BoxShape& shape, std::size_t rowBytes, std::size_t ringBytes);

  BoxConstants box_;
  ExactBox exact_;
  HvMemoryNote note_;
  std::unique_ptr<std::byte, Free> rings_;
  State state_;
};

}  // namespace vblur
