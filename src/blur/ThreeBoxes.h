// The three boxes of one pass over one block of lines, each box producing what the next one needs.
#pragma once

#include <cstdint>

#include "blur/BoxFilter.h"
#include "blur/LineBlock.h"
#include "blur/PassRanges.h"

namespace vblur {

// The line buffers of one thread for one pass, allocated once for all blocks, for lines of Count components, 1 to 4.
template <int Count>
class ThreeBoxes {
 public:
  static constexpr int kLanes = kBlockLanes<Count>;

  // `outside` has Count components.
  ThreeBoxes(const BoxConstants& box, std::int32_t boxes, const PassAxis& axis, const std::int32_t* outside);

  // False when there is no memory.
  bool isReady() const { return a_.isReady() && b_.isReady() && source_ != nullptr; }

  // Filters one block.
  void run(const BlockReader& lines, const BlockWriter& results);

 private:
  // A block of lines in memory, by position.
  struct Reader {
    const std::int32_t* data;
    std::int64_t start;
    const std::int32_t* operator()(std::int64_t i) const { return data + (i - start) * kLanes; }
  };
  Reader read(const BlockReader& lines, const BoxReach& range);
  Reader read(LineBuffer<Count>& buffer, const BoxReach& range);

  BoxConstants box_;
  std::int32_t boxes_;
  LineBuffer<Count> a_;
  LineBuffer<Count> b_;
  LaneMemory source_;
  PassRanges ranges_;
};

}  // namespace vblur
