// How many frames of a sequence are on their way at once, how many of them render side by side, and on how
// many threads each.
#pragma once

#include <cstdint>

namespace vblur::host {

struct SequenceLoad {
  std::int64_t frames = 1;
  std::int64_t bytesPerFrame = 0;  // pictures and working memory of one frame on its way
  std::int64_t memory = 0;         // what all frames on their way may take together
  std::int32_t processors = 1;     // threads of the whole run, at least 1
  std::int32_t asked = 0;          // frames to render side by side; 0: pick a number
};

struct SequenceLanes {
  std::int32_t frames = 1;   // rendered side by side
  std::int32_t threads = 1;  // of each render
  std::int32_t slots = 1;    // frames on their way, with those that are being read and written
};

// Only one render of a process spreads over threads at a time. So frames gain from being side by side when
// each keeps to one thread and there are as many of them as processors: then no thread ever waits for
// another within a pass. That is the choice for a sequence when the memory holds frames for at least half
// of the processors; else, and for a few frames, all threads work on one frame. What was asked for is kept
// to, whatever the memory; the frames beyond those that render, which only hide the time of files, come
// out of it.
SequenceLanes FramesInFlight(const SequenceLoad& load);

}  // namespace vblur::host
