// The window of a processor: x1, y1, x2, y2.
#pragma once

#include <cstdint>
#include <vector>

namespace vblur::test {

using Ends = std::vector<std::int32_t>;

template <class Processor>
Ends windowOf(const Processor& processor) {
  return {processor.x1, processor.y1, processor.x2, processor.y2};
}

}  // namespace vblur::test
