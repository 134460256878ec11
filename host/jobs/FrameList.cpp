#include "host/jobs/FrameList.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace vblur::host {

// A step that CheckValues refuses counts as one frame.
FrameList::FrameList(std::vector<FrameRange> ranges)
    : ranges_(std::move(ranges)), first_(ranges_.front().first), last_(ranges_.front().last) {
  std::int64_t count = 0;
  for (const FrameRange& range : ranges_) {
    count += range.step < 1 ? 1 : range.Count();
    ends_.push_back(count);
    first_ = std::min(first_, range.first);
    last_ = std::max(last_, range.last);
  }
}

FrameList FrameList::Of(const std::vector<std::int32_t>& frames) {
  std::vector<FrameRange> ranges;
  for (const std::int32_t frame : frames) {
    if (!ranges.empty()) {
      FrameRange& range = ranges.back();
      const std::int64_t step = std::int64_t{frame} - range.last;
      const bool isAlone = range.first == range.last;
      if (step > 0 && step <= std::numeric_limits<std::int32_t>::max() && (isAlone || step == range.step)) {
        range.last = frame;
        range.step = static_cast<std::int32_t>(step);
        continue;
      }
    }
    ranges.push_back({frame, frame, 1});
  }
  return FrameList(std::move(ranges));
}

std::int32_t FrameList::FrameAt(std::int64_t index) const {
  const auto at = static_cast<std::size_t>(std::ranges::upper_bound(ends_, index) - ends_.begin());
  return ranges_[at].FrameAt(at == 0 ? index : index - ends_[at - 1]);
}

bool FrameList::Contains(std::int32_t frame) const {
  return std::ranges::any_of(ranges_, [frame](const FrameRange& range) {
    return frame >= range.first && frame <= range.last && (std::int64_t{frame} - range.first) % range.step == 0;
  });
}

}  // namespace vblur::host
