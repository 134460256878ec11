// Jobs that the tests of the checks begin with.
#pragma once

#include <string>

#include "host/jobs/JobCheck.h"
#include "tests/support/host/FailureOf.h"

namespace vblur::host {

inline Job Still() {
  Job job;
  job.folder = "/shots";
  job.input = ImageRecord{"in.png", {}, {}, {0, 0}};
  job.output.file = "out.png";
  return job;
}

inline Job Sequence() {
  Job job = Still();
  job.input->file = "in.%04d.exr";
  job.output.file = "out.####.exr";
  job.frames = FrameRange{1, 48, 1};
  return job;
}

// The failure of a job after a change to it.
template <typename Change>
std::string FailureWith(Job job, Change change) {
  change(job);
  return UsageFailureOf([&] { CheckJob(job); });
}

}  // namespace vblur::host
