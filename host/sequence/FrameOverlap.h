// One frame whose reading, rendering and writing overlap: bands of it are rendered when the rows that they come from
// are read, and rows are written when they are rendered.
#pragma once

#include <functional>

#include "host/files/RowProgress.h"
#include "host/hosted/FrameBands.h"
#include "host/sequence/JobPictures.h"
#include "host/sequence/StageTimes.h"

namespace vblur::host {

struct OverlapStages {
  // On a thread of its own where the system has one. `watch` follows it.
  std::function<void(const FrameBuffers::Watch& watch)> read;
  // On the calling thread. Returns when the output is complete.
  std::function<void(const BandSteps& steps)> render;
  // On a thread of its own, or last.
  std::function<void(const RowProgress& rendered)> write;
  // The heights of the two pictures, once they have them. They differ where the job says so.
  std::function<std::int32_t()> inputHeight;
  std::function<std::int32_t()> outputHeight;
};

// Returns false for a frame that is only read, as all its rows had to be there first. Throws what the stages throw, the
// failures first: a stage that waits for rows that will not come throws FileInterrupted. Adds what each stage took
// longer than the one before.
bool RunOverlapped(const OverlapStages& stages, StageTimes& seconds);

}  // namespace vblur::host
