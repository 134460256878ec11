#include "blur/ThreeBoxes.h"

#include <algorithm>

namespace vblur {

template <class Lane, int Count>
ThreeBoxes<Lane, Count>::ThreeBoxes(const Box& box, std::int32_t boxes, const PassAxis& axis, const Lane* outside)
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
  source_ = allocateLanes<Lane>(longest, kLanes);
}

template <class Lane, int Count>
void ThreeBoxes<Lane, Count>::run(const BlockReader<Lane>& lines, const BlockWriter<Lane>& results) {
  if constexpr (std::is_same_v<Lane, float>) {
    runExact(lines, results);
  } else {
    runIntegers(lines, results);
  }
}

template <class Lane, int Count>
void ThreeBoxes<Lane, Count>::runIntegers(const BlockReader<Lane>& lines, const BlockWriter<Lane>& results) {
  if constexpr (std::is_same_v<Lane, std::int32_t>) {
    const auto nothing = [](std::int64_t) {};
    const auto intoA = [this](std::int64_t i) { return a_.row(i); };
    const auto intoB = [this](std::int64_t i) { return b_.row(i); };
    alignas(64) std::int32_t result[kLanes] = {};
    // Radii from 8192 on have a scale of 0.
    if (box_.scale == 0) {
      for (std::int64_t i = ranges_.last.first; i < ranges_.last.last; ++i)
        results.store(i, result);
      return;
    }

    filterBox<kLanes>(ranges_.first.first, ranges_.first.last, box_, read(lines, ranges_.first), intoA, nothing);
    if (boxes_ == 3) {
      filterBox<kLanes>(ranges_.second.first, ranges_.second.last, box_, read(a_, ranges_.second), intoB, nothing);
    }
    filterBox<kLanes>(
        ranges_.last.first, ranges_.last.last, box_, read(boxes_ == 3 ? b_ : a_, ranges_.last),
        [&](std::int64_t) { return result; }, [&](std::int64_t i) { results.store(i, result); });
  }
}

// Radii are from 0 up, so that each buffer holds what the next box reads, and has room for its range.
template <class Lane, int Count>
void ThreeBoxes<Lane, Count>::runExact(const BlockReader<Lane>& lines, const BlockWriter<Lane>& results) {
  if constexpr (std::is_same_v<Lane, float>) {
    const auto filter = [this](const BoxReach& range, const Reader& source, LineBuffer<Lane, Count>& into) {
      if (range.first >= range.last) return;
      exactBoxRows(source(range.first - box_.reach()), range.last - range.first, kLanes, box_, into.row(range.first));
    };
    filter(ranges_.first, read(lines, ranges_.first), a_);
    if (boxes_ == 3) filter(ranges_.second, read(a_, ranges_.second), b_);
    LineBuffer<Lane, Count>& from = boxes_ == 3 ? b_ : a_;
    LineBuffer<Lane, Count>& into = boxes_ == 3 ? a_ : b_;
    filter(ranges_.last, read(from, ranges_.last), into);
    for (std::int64_t i = ranges_.last.first; i < ranges_.last.last; ++i)
      results.store(i, into.row(i));
  }
}

template <class Lane, int Count>
typename ThreeBoxes<Lane, Count>::Reader ThreeBoxes<Lane, Count>::read(const BlockReader<Lane>& lines,
                                                                       const BoxReach& range) {
  const BoxReach needed = boxReach(range.first, range.last, box_);
  if (range.first < range.last) lines.gather(needed.first, needed.last, source_.get());
  return {source_.get(), needed.first};
}

template <class Lane, int Count>
typename ThreeBoxes<Lane, Count>::Reader ThreeBoxes<Lane, Count>::read(LineBuffer<Lane, Count>& buffer,
                                                                       const BoxReach& range) {
  const BoxReach needed = boxReach(range.first, range.last, box_);
  if (buffer.holds(needed.first, needed.last)) return {buffer.row(needed.first), needed.first};
  return read(static_cast<const BlockReader<Lane>&>(buffer), range);
}

template class ThreeBoxes<std::int32_t, 1>;
template class ThreeBoxes<std::int32_t, 2>;
template class ThreeBoxes<std::int32_t, 3>;
template class ThreeBoxes<std::int32_t, 4>;
template class ThreeBoxes<float, 1>;
template class ThreeBoxes<float, 2>;
template class ThreeBoxes<float, 3>;
template class ThreeBoxes<float, 4>;

}  // namespace vblur
