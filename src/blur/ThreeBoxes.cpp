#include "blur/ThreeBoxes.h"

#include <algorithm>

namespace vblur {

template <int Count>
ThreeBoxes<Count>::ThreeBoxes(const BoxConstants& box, std::int32_t boxes, const PassAxis& axis,
                              const std::int32_t* outside)
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

template <int Count>
void ThreeBoxes<Count>::run(const BlockReader& lines, const BlockWriter& results) {
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

template <int Count>
typename ThreeBoxes<Count>::Reader ThreeBoxes<Count>::read(const BlockReader& lines, const BoxReach& range) {
  const BoxReach needed = boxReach(range.first, range.last, box_);
  if (range.first < range.last) lines.gather(needed.first, needed.last, source_.get());
  return {source_.get(), needed.first};
}

template <int Count>
typename ThreeBoxes<Count>::Reader ThreeBoxes<Count>::read(LineBuffer<Count>& buffer, const BoxReach& range) {
  const BoxReach needed = boxReach(range.first, range.last, box_);
  if (buffer.holds(needed.first, needed.last)) return {buffer.row(needed.first), needed.first};
  return read(static_cast<const BlockReader&>(buffer), range);
}

template class ThreeBoxes<1>;
template class ThreeBoxes<2>;
template class ThreeBoxes<3>;
template class ThreeBoxes<4>;

}  // namespace vblur
