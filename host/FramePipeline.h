// Three stages over a run of items at once: while one item is read, the one before is rendered and the
// one before that is written. Items pass every stage in order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace vblur::host {

// A stage handles one item in one slot; a slot belongs to one item from its reading to its writing, and
// then to another, so what it holds can be used again.
struct FrameStages {
  using Stage = std::function<void(std::size_t slot, std::int64_t item)>;

  Stage read;    // on a thread of its own
  Stage render;  // on the calling thread
  Stage write;   // on a thread of its own
  // Asked before an item is read; once false, no further item is begun. Those that were begun still pass
  // all their stages.
  std::function<bool()> goesOn;
};

// Returns when every item that was begun has passed all stages. The number of slots (at least 1) limits
// how many items are under way; 3 keep all stages busy. An exception of a stage ends the run as goesOn
// does, no stage sees a later item, and it is thrown again here.
void RunFramePipeline(std::size_t slots, std::int64_t items, const FrameStages& stages);

}  // namespace vblur::host
