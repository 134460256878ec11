#include "host/jobs/JobFiles.h"

#include <unordered_map>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"
#include "host/base/RealPaths.h"

namespace vblur::host {

namespace {

class FileCollisions {
 public:
  FileCollisions(const Job& job, const FrameRange& frames) : job_(job), frames_(frames) {}

  void AddSources() {
    for (const auto& [field, file] : SourcesOf(job_)) {
      const FramePattern pattern(*file);
      RealPaths paths;
      for (std::int64_t i = 0; i < (pattern.HasNumber() ? frames_.Count() : 1); ++i)
        read_.emplace(paths.Of(JobFilePath(job_, pattern, frames_.FrameAt(i))).string(), field);
    }
  }

  void CheckOutputs() {
    const FramePattern pattern(job_.output.file);
    RealPaths paths;
    for (std::int64_t i = 0; i < frames_.Count(); ++i) {
      const std::int32_t frame = frames_.FrameAt(i);
      const std::string path = paths.Of(JobFilePath(job_, pattern, frame)).string();
      if (const auto source = read_.find(path); source != read_.end()) {
        Refuse("output", Quoted(pattern.FileName(frame)) + " is the picture that " + std::string(source->second) +
                             " is read from, expected another file");
      }
      if (const auto [other, isNew] = written_.emplace(path, frame); !isNew) {
        Refuse("output", "frames " + std::to_string(other->second) + " and " + std::to_string(frame) +
                             " would both be written to " + Quoted(path) + ", expected a file for each frame");
      }
    }
  }

 private:
  const Job& job_;
  const FrameRange& frames_;
  std::unordered_map<std::string, std::string_view> read_;  // field by path
  std::unordered_map<std::string, std::int32_t> written_;   // frame by path
};

}  // namespace

std::filesystem::path JobFilePath(const Job& job, const FramePattern& pattern, std::int32_t frame) {
  const std::filesystem::path name = pattern.FileName(frame);
  // Messages name "x" rather than "./x".
  return job.folder == "." || job.folder.empty() ? name : job.folder / name;
}

std::vector<JobSource> SourcesOf(const Job& job) {
  std::vector<JobSource> sources;
  if (job.input) sources.push_back({"input", &job.input->file});
  if (job.input2) sources.push_back({"input2", &job.input2->file});
  if (job.mask) sources.push_back({"mask", &job.mask->file});
  return sources;
}

void CheckOutputFiles(const Job& job, const FrameRange& frames, bool outputMayBeInput) {
  FileCollisions collisions(job, frames);
  if (!outputMayBeInput) collisions.AddSources();
  collisions.CheckOutputs();
}

}  // namespace vblur::host
