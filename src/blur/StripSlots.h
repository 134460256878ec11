// The rows of the source that the y pass reads, each in one slot, so that the x pass filters it once. Rows beyond the
// source's box map to rows of the box; the outside colour takes one slot.
#pragma once

#include <cstdint>
#include <memory>

#include "blur/BoxFilter.h"
#include "image/HvTexAxis.h"

namespace vblur {

class StripSlots {
 public:
  // `read`: the rows that the y pass reads, in image coordinates.
  StripSlots(const HvTexAxis& source, const BoxReach& read);

  // False when there is no memory.
  bool isReady() const { return slots_ != nullptr; }
  // The number of slots.
  std::int32_t count() const { return count_; }
  // The image coordinate of a slot: consecutive, but for the slot of the outside colour.
  std::int32_t rowOf(std::int32_t slot) const { return slot == outsideSlot_ ? outsideRow_ : firstRow_ + slot; }
  // The slot of place i of `read`.
  std::int32_t at(std::int64_t i) const { return slots_[static_cast<std::size_t>(i)]; }

  struct Run {
    std::int32_t slot = 0;
    std::int32_t step = 0;  // 1, -1 or 0
    std::int32_t length = 0;
  };
  // A run of slots from place i on with a constant step, of at most `most` places, within one strip of kLines slots.
  template <std::int32_t kLines>
  Run runAt(std::int64_t i, std::int64_t most) const {
    Run run{at(i), 0, 1};
    if (most == 1) return run;
    const std::int32_t strip = run.slot / kLines;
    run.step = at(i + 1) - run.slot;
    if (run.step < -1 || run.step > 1 || at(i + 1) / kLines != strip) {
      run.step = 0;
      return run;
    }
    while (run.length < most) {
      const std::int32_t next = at(i + run.length);
      if (next != run.slot + run.length * run.step || next / kLines != strip) break;
      ++run.length;
    }
    return run;
  }

 private:
  void giveEachPlaceASlot();

  std::int64_t length_;
  std::unique_ptr<std::int32_t[]> slots_;
  std::int32_t count_ = 0;
  std::int32_t firstRow_ = 0;
  std::int32_t outsideSlot_ = -1;
  std::int32_t outsideRow_ = 0;
};

}  // namespace vblur
