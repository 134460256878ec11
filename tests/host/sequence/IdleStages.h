// Stages of a pipeline that do nothing, for tests to replace those that they watch.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host/sequence/FramePipeline.h"

namespace vblur::host {

inline FrameStages IdleStages() {
  FrameStages stages;
  stages.goesOn = [] { return true; };
  stages.read = stages.write = stages.report = [](std::size_t, std::int64_t) {};
  stages.render = [](std::size_t, std::size_t, std::int64_t) {};
  return stages;
}

}  // namespace vblur::host
