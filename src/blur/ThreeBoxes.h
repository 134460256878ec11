// The three boxes of one pass over one block of lines, each box producing what the next one needs.
#pragma once

#include <algorithm>
#include <cstdint>

#include "blur/BoxFilter.h"
#include "blur/LineBlock.h"
#include "blur/PassRanges.h"

namespace vblur {

// The line buffers of one thread for one pass. Between two blocks nothing is allocated.
template <class Mask>
class ThreeBoxes {
 public:
  static constexpr int kLanes = kBlockLanes<Mask>;

  template <class Pixel>
  ThreeBoxes(const BoxConstants& box, std::int32_t boxes, const PassAxis& axis, const Pixel& outside)
      : box_(box),
        boxes_(boxes),
        a_(axis.targetStart - box.margin(boxes), axis.lineLength + 2 * box.margin(boxes), axis.edgeMethod, outside),
        b_(a_.start(), a_.end() - a_.start(), axis.edgeMethod, outside),
        ranges_(passRanges(box, boxes, axis)) {
    if (!a_.isReady() || !b_.isReady()) return;
    std::int64_t longest = 0;
    for (const BoxReach& range : {ranges_.first, ranges_.second, ranges_.last}) {
      const BoxReach read = boxReach(range.first, range.last, box_);
      longest = std::max(longest, read.last - read.first);
    }
    source_ = allocateLanes(longest, kLanes);
  }

  bool isReady() const { return a_.isReady() && b_.isReady() && source_ != nullptr; }

  // Filters one block; store(position, lanes) gets each result of the last box.
  template <class Lines, class Store>
  void run(const Lines& lines, const Store& store) {
    const auto nothing = [](std::int64_t) {};
    const auto intoA = [this](std::int64_t i) { return a_.row(i); };
    const auto intoB = [this](std::int64_t i) { return b_.row(i); };
    alignas(64) std::int32_t result[kLanes] = {};
    // Radii from 8192 on have no weight left: whatever the lines hold, the result is 0.
    if (box_.scale == 0) {
      for (std::int64_t i = ranges_.last.first; i < ranges_.last.last; ++i)
        store(i, result);
      return;
    }

    filterBox<kLanes>(ranges_.first.first, ranges_.first.last, box_, read(lines, ranges_.first), intoA, nothing);
    if (boxes_ == 3) {
      filterBox<kLanes>(ranges_.second.first, ranges_.second.last, box_, read(a_, ranges_.second), intoB, nothing);
    }
    filterBox<kLanes>(
        ranges_.last.first, ranges_.last.last, box_, read(boxes_ == 3 ? b_ : a_, ranges_.last),
        [&](std::int64_t) { return result; }, [&](std::int64_t i) { store(i, result); });
  }

 private:
  // Where a block of lines starts in memory, as a function of the position.
  struct Reader {
    const std::int32_t* data;
    std::int64_t start;
    const std::int32_t* operator()(std::int64_t i) const { return data + (i - start) * kLanes; }
  };

  template <class Lines>
  Reader read(const Lines& lines, const BoxReach& range) {
    const BoxReach needed = boxReach(range.first, range.last, box_);
    if (range.first < range.last) lines.gather(needed.first, needed.last, source_.get());
    return {source_.get(), needed.first};
  }

  Reader read(LineBuffer<Mask>& buffer, const BoxReach& range) {
    const BoxReach needed = boxReach(range.first, range.last, box_);
    if (buffer.holds(needed.first, needed.last)) return {buffer.row(needed.first), needed.first};
    if (range.first < range.last) buffer.gather(needed.first, needed.last, source_.get());
    return {source_.get(), needed.first};
  }

  BoxConstants box_;
  std::int32_t boxes_;
  LineBuffer<Mask> a_;
  LineBuffer<Mask> b_;
  LaneMemory source_;
  PassRanges ranges_;
};

}  // namespace vblur
