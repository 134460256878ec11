// The files that a job reads and writes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "host/jobs/FramePattern.h"
#include "host/jobs/Job.h"

namespace vblur::host {

// A file name of a job, in the job's folder unless it is absolute.
std::filesystem::path JobFilePath(const Job& job, const FramePattern& pattern, std::int32_t frame);

// A field of the job that names pictures to read.
struct JobSource {
  std::string_view field;
  const std::string* file;
};

// input, input2 and mask, as far as the job has them; borrowed.
std::vector<JobSource> SourcesOf(const Job& job);

// Refuses two frames that would be written to one file, and, unless `outputMayBeInput`, an output that any frame
// reads. Compares real paths. Throws Failure (wrong usage) that names the field.
void CheckOutputFiles(const Job& job, const FrameRange& frames, bool outputMayBeInput);

}  // namespace vblur::host
