// The whole frame: every stage in its order.
#pragma once

#include "frame_job.h"

namespace model {

/// The output after the frame, at its full height also for a field.
Picture RenderFrame(const FrameJob& job);

}  // namespace model
