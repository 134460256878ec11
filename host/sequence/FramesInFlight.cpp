#include "host/sequence/FramesInFlight.h"

#include <algorithm>
#include <limits>

#include <fcntl.h>
#include <sys/resource.h>

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

std::int64_t FreeFiles() {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return std::numeric_limits<std::int64_t>::max();
  // Of limits beyond this one, what is open is a small part.
  constexpr rlim_t kCounted = 1024;
  const auto counted = static_cast<int>(std::min(limit.rlim_cur, kCounted));
  std::int64_t open = 0;
  for (int file = 0; file < counted; ++file)
    open += ::fcntl(file, F_GETFD) >= 0 ? 1 : 0;
  constexpr rlim_t kMost = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int64_t>(std::min(limit.rlim_cur, kMost)) - open;
}

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
