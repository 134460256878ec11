#include "host/sequence/FramesInFlight.h"

#include <algorithm>

namespace vblur::host {

namespace {

// One frame being read and one being written, beside those that render.
constexpr std::int64_t kForFiles = 2;

// Open at a time: a file and a look at its chunks or its folder.
constexpr std::int64_t kFilesPerFrame = 2;
// Open for the whole process: what the error stream was and what it is while a picture library is silenced.
constexpr std::int64_t kFilesBeside = 2;

std::int64_t FramesThatFit(const SequenceLoad& load) {
  return std::min(load.memory / std::max<std::int64_t>(load.bytesPerFrame, 1),
                  (load.files - kFilesBeside) / kFilesPerFrame);
}

}  // namespace

SequenceLanes FramesInFlight(const SequenceLoad& load) {
  const std::int64_t frames = std::max<std::int64_t>(load.frames, 1);
  const std::int64_t fitting = FramesThatFit(load);
  const std::int64_t sideBySide = std::min<std::int64_t>(load.processors, fitting - kForFiles);
  const bool gains = frames > load.processors && sideBySide * 2 >= load.processors;
  const std::int64_t rendering = load.asked > 0
                                     ? std::min({std::int64_t{load.asked}, frames, std::max<std::int64_t>(fitting, 1)})
                                 : gains ? sideBySide
                                         : 1;
  const bool oneThreadEach = load.asked > 0 ? rendering >= load.processors : gains;
  SequenceLanes lanes;
  lanes.frames = static_cast<std::int32_t>(rendering);
  lanes.threads = oneThreadEach ? 1 : load.processors;
  lanes.slots = static_cast<std::int32_t>(std::min(frames, std::clamp(fitting, rendering, rendering + kForFiles)));
  return lanes;
}

}  // namespace vblur::host
