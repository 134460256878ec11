#include "apps/vblur/RunFiles.h"

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"
#include "host/base/StandardStream.h"
#include "host/base/Utf8.h"
#include "host/files/OutputFile.h"
#include "host/jobs/JobFiles.h"

namespace vblur::cli {

void CheckPictureName(const std::filesystem::path& output) {
  if (host::IsStandardStream(output)) {
    host::Refuse("OUTPUT", "this command writes files only, expected the name of one, found -");
  }
  host::OutputFormatOf(output);
}

void RequireOtherInput(const std::string& place, const std::filesystem::path& job, const std::filesystem::path& other) {
  if (!host::IsStandardStream(job) || !host::IsStandardStream(other)) return;
  host::Refuse(place, "the standard input is the job file, expected a file");
}

void RunFiles::AddRead(const std::filesystem::path& file) {
  if (!host::IsStandardStream(file)) uses_.emplace(host::Utf8Of(paths_.Of(file)), Use::Read);
}

void RunFiles::AddReadByJob(const host::Job& job, const host::FrameList& frames) {
  host::ForEachFileRead(job, frames,
                        [this](const host::FileRead& file) { uses_.emplace(host::Utf8Of(file.path), Use::Read); });
  for (host::FramePattern& sequence : host::SequencesReadBy(job))
    sequences_.push_back(std::move(sequence));
}

void RunFiles::RequireNoFrame(const std::string& place, const std::filesystem::path& file) {
  const std::string real = host::Utf8Of(paths_.Of(file));
  for (const host::FramePattern& sequence : sequences_) {
    const auto frame = sequence.FrameOf(real);
    if (!frame || uses_.contains(real)) continue;
    host::Refuse(place, "expected another name, " + host::Quoted(host::Utf8Of(file)) + " is frame " +
                            std::to_string(*frame) + " of a sequence that this run reads");
  }
}

void RunFiles::AddWrittenByJob(const host::Job& job, const host::FrameList& frames) {
  if (host::IsStandardStream(job.output.file)) return;
  const host::FramePattern pattern(job.output.file);
  for (std::int64_t i = 0; i < frames.Count(); ++i) {
    uses_.emplace(host::Utf8Of(paths_.Of(host::OutputFilePath(job, pattern, frames.FrameAt(i)))), Use::Written);
  }
}

void RunFiles::AddWritten(const std::string& place, const std::filesystem::path& file) {
  if (host::IsStandardStream(file)) host::Refuse(place, "expected the name of a file, found -");
  RequireNoFrame(place, file);
  if (const auto [use, isNew] = uses_.emplace(host::Utf8Of(paths_.Of(file)), Use::Written); !isNew) {
    host::Refuse(place, "expected another name, " + host::Quoted(host::Utf8Of(file)) +
                            (use->second == Use::Read ? " is read by this run" : " is written by this run already"));
  }
  try {
    host::RequireWritable(file, overwrite_);
  } catch (const host::Failure& failure) {
    if (failure.Kind() != host::FailureKind::FileExists) throw;
    // Frames alone can be skipped.
    throw host::Failure(failure.Code(), std::string(failure.what()) + "; give --overwrite to replace it");
  }
}

}  // namespace vblur::cli
