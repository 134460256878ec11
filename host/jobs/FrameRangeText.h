// Ranges of frames as text: "7", "1-48", "1-48x2" (every second frame), "-5-5", "-10--5".
#pragma once

#include <string>
#include <string_view>

#include "host/jobs/Job.h"

namespace vblur::host {

// Throws Failure (wrong usage) for any other text, a last frame before the first, a step below 1 and
// numbers beyond 32 bits.
FrameRange ParseFrameRange(std::string_view text);
// The shortest text that reads back as the same range.
std::string FormatFrameRange(const FrameRange& range);

}  // namespace vblur::host
