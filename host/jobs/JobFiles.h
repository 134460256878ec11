// The files that a job reads and writes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/jobs/FramePattern.h"
#include "host/jobs/Job.h"

namespace vblur::host {

// A file name of a job, in the job's folder unless it is absolute or "-".
std::filesystem::path JobFilePath(const Job& job, const FramePattern& pattern, std::int32_t frame);

// The same for the output of a frame.
std::filesystem::path OutputFilePath(const Job& job, const FramePattern& pattern, std::int32_t frame);

// A field of the job that names pictures to read.
struct JobSource {
  std::string_view field;
  const std::string* file;
};

// input, input2, mask and output/initial, as far as the job has them; borrowed.
std::vector<JobSource> FilesReadBy(const Job& job);

// Whether a picture of the job is the standard input.
bool ReadsStandardInput(const Job& job);

// The frames of the sequence that the job reads, the first of several, as far as they exist; rising. Throws Failure
// (wrong usage) for a job that reads none, and where no frame exists.
std::vector<std::int32_t> FramesOnDisk(const Job& job);

// The sequences that the job reads, as patterns of real paths.
std::vector<FramePattern> SequencesReadBy(const Job& job);

struct FileRead {
  std::string_view field;
  std::filesystem::path path;  // the real one
  std::int32_t frame;          // the first that reads it
  bool isShared;               // by all frames, and there are several
};

// Visits every file that the frames read; the standard input is none.
void ForEachFileRead(const Job& job, const FrameList& frames, const std::function<void(const FileRead&)>& visit);

// Refuses two frames that would be written to one file, an output that another frame reads, and, unless
// `outputMayBeInput`, one that its own frame reads, other than as `initial`. Compares real paths. Throws Failure
// (wrong usage) that names the field.
void CheckOutputFiles(const Job& job, const FrameList& frames, bool outputMayBeInput);

}  // namespace vblur::host
