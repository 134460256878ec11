// Resolves what a job leaves open, and checks that it can be rendered, before anything is read or written.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "host/jobs/Job.h"

namespace vblur::host {

EffectKind ResolveKind(const Job& job);
// The job's frames; frame 0 alone when it names none.
FrameList ResolveFrames(const Job& job);
// The length of the effect in frames; by default from the first to the last frame, whatever the step.
double ResolveDuration(const Job& job);
// The frame that the job's time is the time of; by default its first.
std::int32_t ResolveStart(const Job& job);
// The time of a frame: one unit a frame, counted from the start.
double FrameTime(const Job& job, std::int32_t frame);

// Makes the job render other frames. Its start and its duration stay what they were, so a frame is the same whatever is
// rendered with it. Throws Failure (wrong usage) for a transition that has neither frames nor a duration of its own.
void TakeFrames(Job& job, const FrameList& frames);

// The number in the name of a frame's output, for a frame of a job that CheckValues accepts.
std::int32_t OutputNumber(const Job& job, std::int32_t frame);
// Refuses more than 1,000,000 frames. Throws Failure (wrong usage).
void CheckFrameCount(std::int64_t count);

bool NeedsInput(EffectKind kind);

// Bits of a component that frames are rendered with; 32 are floats.
constexpr bool IsDepth(std::int32_t depth) {
  return depth == 8 || depth == 16 || depth == 32;
}
// Throws Failure (wrong usage) that begins with `place`.
void CheckDepth(std::string_view place, std::int32_t depth);

// The lower left corner of a picture, which may be a sum.
using PixelPosition = std::array<std::int64_t, 2>;
// Refuses a picture whose pixels, or whose sides, are beyond what the effect counts (FrameLimits). Throws Failure
// (wrong usage) that begins with `where`.
void CheckPictureAt(std::string_view where, const PixelPosition& corner, std::int32_t width, std::int32_t height);

// Refuses invalid values: numbers that are not finite, an unknown depth or kind, property
// values that are not allowed, empty regions, sizes below one pixel, frames in the wrong order, and
// pictures, regions and masks that reach beyond the pixels that the effect counts. Throws Failure (wrong usage) that
// names the field.
void CheckValues(const Job& job);

// Refuses two pictures from the standard input. Throws Failure (wrong usage) that names the field.
void CheckStreams(const Job& job);

struct JobCheckOptions {
  // Whether a frame may replace a picture that it alone reads. Its `initial` it may always replace.
  bool outputMayBeInput = false;
};

// CheckValues, and refuses a duration below 0, proxy factors that are not above 0, and what does not go together:
// pictures that the kind of use needs and that are missing, a mask without an input, an outside without a region or
// beside an initial picture, no size for the output, two pictures from the standard input, frame numbers in file names
// without frames, more than 1,000,000 frames, several frames written to one file, an output that is one of the inputs.
// Inputs and `initial` without a number serve every frame. Throws Failure (wrong usage) that names the field.
void CheckJob(const Job& job, const JobCheckOptions& options = {});

}  // namespace vblur::host
