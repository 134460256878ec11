// The three boxes of one pass over one block of lines, each box producing what the next one needs.
#pragma once

#include <cstdint>
#include <type_traits>

#include "blur/BoxFilter.h"
#include "blur/LineBlock.h"
#include "blur/PassRanges.h"

namespace vblur {

// The line buffers of one thread for one pass, allocated once for all blocks, for lines of Count components, 1 to 4.
// Lane is int32 or float.
template <class Lane, int Count>
class ThreeBoxes {
 public:
  using Box = std::conditional_t<std::is_same_v<Lane, float>, ExactBox, BoxConstants>;
  static constexpr int kLanes = kBlockLanes<Lane, Count>;

  // `outside` has Count components.
  ThreeBoxes(const Box& box, std::int32_t boxes, const PassAxis& axis, const Lane* outside);

  // False when there is no memory.
  bool isReady() const { return a_.isReady() && b_.isReady() && source_ != nullptr; }

  // Filters one block.
  void run(const BlockReader<Lane>& lines, const BlockWriter<Lane>& results);

 private:
  // A block of lines in memory, by position.
  struct Reader {
    const Lane* data;
    std::int64_t start;
    const Lane* operator()(std::int64_t i) const { return data + (i - start) * kLanes; }
  };
  Reader read(const BlockReader<Lane>& lines, const BoxReach& range);
  Reader read(LineBuffer<Lane, Count>& buffer, const BoxReach& range);
  void runIntegers(const BlockReader<Lane>& lines, const BlockWriter<Lane>& results);
  void runExact(const BlockReader<Lane>& lines, const BlockWriter<Lane>& results);

  Box box_;
  std::int32_t boxes_;
  LineBuffer<Lane, Count> a_;
  LineBuffer<Lane, Count> b_;
  LaneMemory<Lane> source_;
  PassRanges ranges_;
};

}  // namespace vblur
