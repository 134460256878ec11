// Three stages over a run of items at once: while some items are read, others are rendered and others
// written. Rendering begins in the order of the items, and so does the report of each when it is through.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace vblur::host {

// A stage handles one item in one slot; a slot belongs to one item from its reading to its report, and
// then to another, so what it holds can be used again. Each slot has a thread of its own, and the
// calling thread waits.
struct FrameStages {
  using Stage = std::function<void(std::size_t slot, std::int64_t item)>;
  using Lane = std::function<void(std::size_t lane, std::size_t slot, std::int64_t item)>;

  Stage read;    // several items at once
  Lane render;   // one item in each lane
  Stage write;   // several items at once
  Stage report;  // one item after the other
  // Asked before an item is read; once false, no further item is begun. Those that were begun still pass
  // all their stages.
  std::function<bool()> goesOn;
};

// Returns when every item that was begun has passed all stages. At least one lane and one slot; with two
// slots more than lanes reading and writing keep up with rendering. An exception of a stage ends the run
// as goesOn does, no stage begins a further item, and it is thrown again here.
void RunFramePipeline(std::size_t lanes, std::size_t slots, std::int64_t items, const FrameStages& stages);

}  // namespace vblur::host
