#include <filesystem>
#include <set>
#include <string>

#include "host/files/OutputFormat.h"
#include "host/jobs/FramePattern.h"
#include "host/jobs/JobCheck.h"
#include "host/jobs/JobFile.h"
#include "host/jobs/JobFiles.h"
#include "tests/fuzz/FileChecks.h"
#include "tests/fuzz/FileFuzz.h"
#include "tests/support/host/ScratchFolder.h"

namespace vblur::test {

namespace {

using host::Job;

// Every name that the job gives at a frame, as the system finds the file.
std::set<std::filesystem::path> FilesAt(const Job& job, std::int32_t frame) {
  std::set<std::filesystem::path> files;
  const auto add = [&](const std::string& file) {
    const auto path = host::JobFilePath(job, host::FramePattern(file), frame);
    files.insert(std::filesystem::weakly_canonical(std::filesystem::absolute(path)));
  };
  for (const auto& [field, file] : host::FilesReadBy(job))
    add(*file);
  add(job.output.file);
  return files;
}

// Written to another folder, the job means the same pictures.
void CheckMoved(const Job& job) {
  static const host::ScratchFolder scratch;
  const auto path = scratch.path() / "moved.json";
  host::WriteJobFile(job, path);
  const Job moved = host::ReadJobFile(path);
  for (const std::int32_t frame : {0, -7, 12345})
    Demand(FilesAt(moved, frame) == FilesAt(job, frame),
           "a job that was moved names other pictures: " + host::FormatJob(job) + " is now " + host::FormatJob(moved));
}

void CheckFrames(const Job& job) {
  const host::FrameList frames = host::ResolveFrames(job);
  const std::int64_t last = frames.Count() - 1;
  for (const std::int64_t index : {std::int64_t{0}, last / 2, last}) {
    const std::int32_t frame = frames.FrameAt(index);
    Demand(frames.Contains(frame), "a job has a frame that is not in its list: " + std::to_string(frame));
    host::CheckStorage(host::OutputFilePath(job, host::FramePattern(job.output.file), frame), job.output.storage);
  }
}

}  // namespace

bool CheckJobFile(std::string_view bytes) {
  // The names of all frames are compared, which takes long for many: those of more are looked at only to be refused.
  constexpr std::int64_t kFew = 1000;
  constexpr std::int64_t kTooMany = 1'000'000;
  static const host::ScratchFolder folder;
  Job job;
  if (!Accepts([&] { job = host::ParseJob(bytes, folder.path() / "jobs"); })) return false;
  if (!Accepts([&] { host::CheckValues(job); })) return false;
  Demand(host::FormatJob(Refiled(job)) == host::FormatJob(job), "a job's file is another one when it is written again");
  const std::int64_t count = host::ResolveFrames(job).Count();
  if (count > kFew && count <= kTooMany) return true;
  const bool isAccepted = Accepts([&] {
    host::CheckJob(job);
    CheckFrames(job);
  });
  Demand(!isAccepted || count <= kFew, "a job of too many frames is accepted");
  return isAccepted && Accepts([&] { CheckMoved(job); });
}

}  // namespace vblur::test
