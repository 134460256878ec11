#include "host/jobs/JobFiles.h"

#include <algorithm>
#include <unordered_map>

#include "host/base/Failure.h"
#include "host/base/LongPath.h"
#include "host/base/NameMatch.h"
#include "host/base/RealPaths.h"
#include "host/base/StandardStream.h"
#include "host/base/Utf8.h"
#include "host/jobs/JobCheck.h"

namespace vblur::host {

namespace {

constexpr std::string_view kInitialField = "output/initial";

// Who reads a file.
struct Reader {
  std::string_view field;
  std::int32_t frame = 0;
  bool isShared = false;  // other frames read it too
};

class FileCollisions {
 public:
  FileCollisions(const Job& job, const FrameList& frames, bool outputMayBeInput)
      : job_(job), frames_(frames), outputMayBeInput_(outputMayBeInput) {
    ForEachFileRead(job, frames, [this](const FileRead& file) {
      const auto reader = read_.emplace(Utf8Of(file.path), Reader{file.field, file.frame, file.isShared}).first;
      if (file.isShared || reader->second.frame != file.frame) reader->second.isShared = true;
    });
  }

  void CheckOutputs() {
    if (IsStandardStream(job_.output.file)) return;
    const FramePattern pattern(job_.output.file);
    RealPaths paths;
    for (std::int64_t i = 0; i < frames_.Count(); ++i) {
      const std::int32_t frame = frames_.FrameAt(i);
      const std::string path = Utf8Of(paths.Of(OutputFilePath(job_, pattern, frame)));
      if (const auto reader = read_.find(path); reader != read_.end()) {
        CheckReader(reader->second, Quoted(pattern.FileName(OutputNumber(job_, frame))), frame);
      }
      if (const auto [other, isNew] = written_.emplace(path, frame); !isNew) {
        Refuse("output", "frames " + std::to_string(other->second) + " and " + std::to_string(frame) +
                             " would both be written to " + Quoted(path) + ", expected a file for each frame");
      }
    }
  }

 private:
  // A frame may read its own output and no other's: which of two frames comes first is left open.
  void CheckReader(const Reader& reader, const std::string& name, std::int32_t frame) const {
    const std::string field(reader.field);
    if (!outputMayBeInput_ && reader.field != kInitialField) {
      throw Failure(ExitCode::WrongUsage,
                    "output: " + name + " is the picture that " + field + " is read from, expected another file",
                    reader.isShared || reader.frame != frame ? FailureKind::Other : FailureKind::IsInput);
    }
    const std::string what = name + " of frame " + std::to_string(frame) + " is the picture that ";
    if (reader.isShared) Refuse("output", what + "several frames read as " + field + ", expected another file");
    if (reader.frame != frame) {
      Refuse("output",
             what + "frame " + std::to_string(reader.frame) + " reads as " + field + ", expected another file");
    }
  }

  const Job& job_;
  const FrameList& frames_;
  const bool outputMayBeInput_;
  std::unordered_map<std::string, Reader> read_;           // by path
  std::unordered_map<std::string, std::int32_t> written_;  // frame by path
};

}  // namespace

std::filesystem::path JobFilePath(const Job& job, const FramePattern& pattern, std::int32_t frame) {
  std::filesystem::path name = PathOf(pattern.FileName(frame));
  if (IsStandardStream(name)) return name;
  // Messages name "x" rather than "./x". A drive has a current folder of its own.
  const bool isWhole = job.folder == "." || job.folder.empty() || name.has_root_name();
  return ExtendedPath(isWhole ? name : job.folder / name);
}

std::filesystem::path OutputFilePath(const Job& job, const FramePattern& pattern, std::int32_t frame) {
  return JobFilePath(job, pattern, OutputNumber(job, frame));
}

std::vector<JobSource> FilesReadBy(const Job& job) {
  std::vector<JobSource> sources;
  if (job.input) sources.push_back({"input", &job.input->file});
  if (job.input2) sources.push_back({"input2", &job.input2->file});
  if (job.mask) sources.push_back({"mask", &job.mask->file});
  if (job.output.initial) sources.push_back({kInitialField, &*job.output.initial});
  return sources;
}

bool ReadsStandardInput(const Job& job) {
  return std::ranges::any_of(FilesReadBy(job), [](const JobSource& source) { return IsStandardStream(*source.file); });
}

std::vector<std::int32_t> FramesOnDisk(const Job& job) {
  for (const auto& [field, file] : FilesReadBy(job)) {
    const FramePattern pattern(*file);
    if (!pattern.HasNumber()) continue;
    auto frames = pattern.FramesOnDisk(job.folder);
    if (frames.empty()) Refuse(field, "no file of " + Quoted(*file) + " exists, so there are no frames to take");
    return frames;
  }
  Refuse("frames", "no input has a frame number in its name, expected frames by their numbers, such as 1-48");
}

std::vector<FramePattern> SequencesReadBy(const Job& job) {
  std::vector<FramePattern> sequences;
  for (const auto& [field, file] : FilesReadBy(job)) {
    if (!FramePattern(*file).HasNumber()) continue;
    const std::size_t name = file->find_last_of(FramePattern::kSeparators) + 1;
    const FramePattern folder(file->substr(0, name));
    // A number in the name of a folder: frames in several folders, whose links are not looked up.
    if (folder.HasNumber()) continue;
    const auto real = RealPaths().Of(JobFilePath(job, folder, 0) / "name").parent_path();
    sequences.emplace_back(FramePattern::Escaped(Utf8Of(real / "")) + Utf8Of(InOneCase(PathOf(file->substr(name)))));
  }
  return sequences;
}

void ForEachFileRead(const Job& job, const FrameList& frames, const std::function<void(const FileRead&)>& visit) {
  for (const auto& [field, file] : FilesReadBy(job)) {
    if (IsStandardStream(*file)) continue;
    const FramePattern pattern(*file);
    RealPaths paths;
    const bool isShared = !pattern.HasNumber() && frames.Count() > 1;
    for (std::int64_t i = 0; i < (pattern.HasNumber() ? frames.Count() : 1); ++i) {
      const std::int32_t frame = frames.FrameAt(i);
      visit({field, paths.Of(JobFilePath(job, pattern, frame)), frame, isShared});
    }
  }
}

void CheckOutputFiles(const Job& job, const FrameList& frames, bool outputMayBeInput) {
  FileCollisions(job, frames, outputMayBeInput).CheckOutputs();
}

}  // namespace vblur::host
