// Warnings about valid but unlikely jobs.
#pragma once

#include "apps/vblur/Terminal.h"
#include "host/jobs/Job.h"

namespace vblur::cli {

// A line for each property with a value beyond its control range, and for an effect without length.
void WarnOfValues(const host::Job& job, Terminal& terminal);

// A line when the region lies outside the picture, by the size of the first frame. Reads that frame's header; a picture
// that cannot be read is left for the renderer to report.
void WarnOfRegion(const host::Job& job, Terminal& terminal);
// The same for the mask that the effect is painted through.
void WarnOfMask(const host::Job& job, Terminal& terminal);

}  // namespace vblur::cli
