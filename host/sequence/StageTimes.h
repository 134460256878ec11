// What the stages of a frame take.
#pragma once

namespace vblur::host {

// In seconds. Of stages that overlap, what each takes longer than the one before.
struct StageTimes {
  double read = 0.0;
  double render = 0.0;
  double write = 0.0;
};

}  // namespace vblur::host
