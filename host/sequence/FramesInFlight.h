// How many frames of a sequence are in flight, how many of them render side by side, and on how many threads each.
#pragma once

#include <cstdint>
#include <limits>

namespace vblur::host {

struct SequenceLoad {
  std::int64_t frames = 1;
  std::int64_t bytesPerFrame = 0;                                 // pictures and working memory of a frame in flight
  std::int64_t memory = 0;                                        // limit for all frames in flight
  std::int32_t processors = 1;                                    // threads of the whole run, at least 1
  std::int32_t asked = 0;                                         // frames to render side by side; 0: automatic
  std::int64_t files = std::numeric_limits<std::int64_t>::max();  // that the process may open yet
};

struct SequenceLanes {
  std::int32_t frames = 1;   // rendered side by side
  std::int32_t threads = 1;  // of each render
  std::int32_t slots = 1;    // frames in flight, including reading and writing
};

// Only one render in a process runs on several threads at a time. A sequence is fastest with one frame per processor on
// one thread each, since no thread then waits for another within a pass. That is chosen when memory holds frames for at
// least half of the processors; otherwise, and for a few frames, all threads work on one frame. The memory and
// the files that may be open limit an explicit number, too, and the extra frames that hide reading and writing; one
// frame is always in flight.
SequenceLanes FramesInFlight(const SequenceLoad& load);

}  // namespace vblur::host
