// A pipeline of reading, rendering and writing with several items in flight. Rendering starts in item order, and
// finished items are reported in item order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace vblur::host {

// A stage handles one item in one slot. A slot serves one item from reading to report, then the next one, which reuses
// its buffers. Each slot has a thread; the calling thread waits. Slots whose threads the system
// refuses stay empty, and without any thread the calling one carries all items.
struct FrameStages {
  using Stage = std::function<void(std::size_t slot, std::int64_t item)>;
  using Lane = std::function<void(std::size_t lane, std::size_t slot, std::int64_t item)>;

  Stage read;    // several items at once
  Lane render;   // one item in each lane
  Stage write;   // several items at once
  Stage report;  // one item after the other
  // Asked before an item is read; once false, no further item starts. Those in flight still pass all stages.
  std::function<bool()> goesOn;
};

// Returns when every item that was started has passed all stages. At least one lane and one slot; two more slots than
// lanes hide reading and writing. After an exception no stage starts another item; it is rethrown here.
void RunFramePipeline(std::size_t lanes, std::size_t slots, std::int64_t items, const FrameStages& stages);

}  // namespace vblur::host
