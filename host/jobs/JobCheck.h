// What a job means where it leaves something open, and whether it can be carried out: asked before
// anything is read or written.
#pragma once

#include <cstdint>

#include "host/jobs/Job.h"

namespace vblur::host {

EffectKind ResolveKind(const Job& job);
// The job's frames; frame 0 alone when it names none.
FrameRange ResolveFrames(const Job& job);
// The length of the effect in frames; when the job names none, all from the first to the last, whatever
// the step.
double ResolveDuration(const Job& job);
// The time of frame n: one unit a frame, from the first one's.
double FrameTime(const Job& job, std::int32_t frame);

bool NeedsInput(EffectKind kind);

// Refuses values that no job may hold: numbers that are not finite, an unknown depth or kind, property
// values that are not allowed, empty regions, sizes below one pixel, frames in the wrong order, and
// regions and masks that reach beyond 32-bit pixel positions. Throws Failure (wrong usage) that names the
// field.
void CheckValues(const Job& job);

struct JobCheckOptions {
  // Whether a frame may replace a picture that the job reads. `initial` may always be replaced.
  bool outputMayBeInput = false;
};

// CheckValues, and refuses what does not go together: pictures that the kind of use needs and that are
// missing, a mask without an input, no size for the output, frame numbers in file names without frames, more than
// 1,000,000 frames, several frames written to one file, an output that is one of the inputs. Inputs and `initial`
// without a number serve every frame. Throws Failure (wrong usage) that names the field.
void CheckJob(const Job& job, const JobCheckOptions& options = {});

}  // namespace vblur::host
