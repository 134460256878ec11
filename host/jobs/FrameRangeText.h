// Frames as text: "7", "1-48", "1-48x2" (every second frame), "-5-5", "-10--5"; lists of these, "1,3,5-9x2"; and frames
// that the files decide: "10-" (to the last that exists), "all" (those that exist).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/jobs/Job.h"

namespace vblur::host {

// One range. Throws Failure (wrong usage) for any other text, a last frame before the first, a step below 1 and
// numbers beyond 32 bits.
FrameRange ParseFrameRange(std::string_view text);
// The shortest text that reads back as the same frames.
std::string FormatFrameRange(const FrameRange& range);
std::string FormatFrames(const FrameList& frames);

// A list, as read.
class FrameChoice {
 public:
  // Throws like ParseFrameRange.
  static FrameChoice Parse(std::string_view text);

  // Whether the frames depend on the files that exist.
  bool IsOpen() const;
  // The frames, each where it is named first. `existing` rises; it counts only for an open choice. Throws Failure
  // (wrong usage) for an open end without a frame behind it, and for too many frames.
  FrameList Among(const std::vector<std::int32_t>& existing) const;

 private:
  struct Part {
    bool isAll = false;
    FrameRange range;
    bool isOpen = false;  // up to the last frame that exists
  };
  std::vector<Part> parts_;
};

// The frames of a list that no file decides.
FrameList ParseFrames(std::string_view text);

}  // namespace vblur::host
