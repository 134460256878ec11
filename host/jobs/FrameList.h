// The frames of a job.
#pragma once

#include <cstdint>
#include <vector>

namespace vblur::host {

// A range of frames: first, first + step, ... up to last.
struct FrameRange {
  std::int32_t first = 0;
  std::int32_t last = 0;
  std::int32_t step = 1;

  std::int64_t Count() const { return (static_cast<std::int64_t>(last) - first) / step + 1; }
  // The frame with an index from 0 on.
  std::int32_t FrameAt(std::int64_t index) const { return static_cast<std::int32_t>(first + index * step); }
  friend bool operator==(const FrameRange&, const FrameRange&) = default;
};

// Frames in the order in which they are rendered: one range after the other.
class FrameList {
 public:
  // Frame 0.
  FrameList() : FrameList(FrameRange{}) {}
  FrameList(const FrameRange& range) : FrameList(std::vector{range}) {}
  // At least one range, and no frame in two of them.
  explicit FrameList(std::vector<FrameRange> ranges);
  // These frames, in this order and none twice; equally spaced ones are joined into ranges.
  static FrameList Of(const std::vector<std::int32_t>& frames);

  const std::vector<FrameRange>& Ranges() const { return ranges_; }
  // All frames from the first to the last.
  bool IsWhole() const { return ranges_.size() == 1 && ranges_.front().step == 1; }
  std::int64_t Count() const { return ends_.back(); }
  std::int32_t FrameAt(std::int64_t index) const;
  // The lowest first and the highest last of the ranges, wherever they stand.
  std::int32_t First() const { return first_; }
  std::int32_t Last() const { return last_; }
  bool Contains(std::int32_t frame) const;

  friend bool operator==(const FrameList&, const FrameList&) = default;

 private:
  std::vector<FrameRange> ranges_;
  std::vector<std::int64_t> ends_;  // frames up to the end of each range
  std::int32_t first_ = 0;
  std::int32_t last_ = 0;
};

}  // namespace vblur::host
