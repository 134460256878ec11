// The three boxes of one pass over one block of lines, each box producing what the next one needs.
#pragma once

#include <algorithm>
#include <cstdint>

#include "blur/BoxFilter.h"
#include "blur/LineBlock.h"

namespace vblur {

// The line buffers of one thread for one pass. Between two blocks nothing is allocated.
template <class Mask>
class ThreeBoxes {
 public:
  static constexpr int kLanes = kBlockLanes<Mask>;

  // The axis that the lines lie along: the window's ends on it, where the target begins, the length of
  // the longest line, and what lies beyond a line.
  struct Axis {
    std::int64_t first = 0;
    std::int64_t last = 0;
    std::int64_t targetStart = 0;
    std::int64_t lineLength = 0;
    std::int32_t edgeMethod = 0;
    // The x pass may have to filter the whole buffer; the y pass writes the window and no more.
    bool lastBoxKeepsToWindow = false;
  };

  template <class Pixel>
  ThreeBoxes(const BoxConstants& box, std::int32_t boxes, const Axis& axis, const Pixel& outside)
      : box_(box),
        boxes_(boxes),
        a_(axis.targetStart - box.margin(boxes), axis.lineLength + 2 * box.margin(boxes), axis.edgeMethod, outside),
        b_(a_.start(), a_.end() - a_.start(), axis.edgeMethod, outside),
        source_(nullptr, &std::free) {
    const std::int64_t reach = box.reach();
    firstRange_ = rangeOrBuffer(axis.first - 2 * reach - 2, axis.last + 2 * reach + 2);
    secondRange_ = rangeOrBuffer(axis.first - reach - 1, axis.last + reach + 1);
    lastRange_ = axis.lastBoxKeepsToWindow ? BoxReach{axis.first, axis.last} : rangeOrBuffer(axis.first, axis.last);
    if (!a_.isReady() || !b_.isReady()) return;
    std::int64_t longest = 0;
    for (const BoxReach& range : {firstRange_, secondRange_, lastRange_}) {
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
      for (std::int64_t i = lastRange_.first; i < lastRange_.last; ++i)
        store(i, result);
      return;
    }

    filterBox<kLanes>(firstRange_.first, firstRange_.last, box_, read(lines, firstRange_), intoA, nothing);
    if (boxes_ == 3) {
      filterBox<kLanes>(secondRange_.first, secondRange_.last, box_, read(a_, secondRange_), intoB, nothing);
    }
    filterBox<kLanes>(
        lastRange_.first, lastRange_.last, box_, read(boxes_ == 3 ? b_ : a_, lastRange_),
        [&](std::int64_t) { return result; }, [&](std::int64_t i) { store(i, result); });
  }

 private:
  // Where a block of lines starts in memory, as a function of the position.
  struct Reader {
    const std::int32_t* data;
    std::int64_t start;
    const std::int32_t* operator()(std::int64_t i) const { return data + (i - start) * kLanes; }
  };

  // A range that the buffer does not hold becomes the whole buffer. That happens for radii below zero
  // only, and then the next box reads the buffer beyond its ends.
  BoxReach rangeOrBuffer(std::int64_t first, std::int64_t last) const {
    if (first < a_.start() || last > a_.end()) return {a_.start(), a_.end()};
    return {first, last};
  }

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
  BoxReach firstRange_;
  BoxReach secondRange_;
  BoxReach lastRange_;
};

}  // namespace vblur
