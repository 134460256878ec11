#include "apps/vblur/RunJob.h"

#include "apps/vblur/Advice.h"
#include "apps/vblur/FlatAreaWarning.h"
#include "apps/vblur/Interruption.h"
#include "apps/vblur/JobWarnings.h"
#include "apps/vblur/LoadServer.h"
#include "host/files/StandardInput.h"
#include "host/jobs/JobCheck.h"
#include "host/jobs/JobFiles.h"
#include "host/sequence/FrameMemory.h"
#include "host/sequence/Progress.h"

namespace vblur::cli {

namespace {

// Adds what the user can do to the messages of failed frames.
class AdvisedProgress : public host::RenderObserver {
 public:
  AdvisedProgress(host::Progress& progress, const CLI::App& command) : progress_(progress), command_(command) {}

  void OnStart(std::int64_t frames, std::int32_t framesInFlight) override { progress_.OnStart(frames, framesInFlight); }
  void OnWarning(std::int32_t frame, const std::string& text) override { progress_.OnWarning(frame, text); }
  void OnFrame(const host::FrameResult& result) override {
    host::FrameResult advised = result;
    if (result.status == host::FrameStatus::Failed) advised.message += Advice(command_, result.kind);
    progress_.OnFrame(advised);
  }

 private:
  host::Progress& progress_;
  const CLI::App& command_;
};

host::ProgressStyle StyleOf(const GlobalOptions& global, const RunOptions& run, const Terminal& terminal) {
  using host::ProgressStyle;
  switch (run.progress) {
    case ProgressChoice::None: return ProgressStyle::None;
    case ProgressChoice::Bar: return ProgressStyle::Bar;
    case ProgressChoice::Lines: return ProgressStyle::Lines;
    case ProgressChoice::Json: return ProgressStyle::Json;
    case ProgressChoice::Automatic: break;
  }
  if (global.quiet) return ProgressStyle::None;
  if (global.verbose > 0) return ProgressStyle::Lines;
  return terminal.IsScreen() ? ProgressStyle::Bar : ProgressStyle::None;
}

}  // namespace

void ApplyGlobalOptions(const GlobalOptions& global, Terminal& terminal) {
  if (global.quiet) terminal.BeQuiet();
}

void ApplyProgress(const RunOptions& run, Terminal& terminal) {
  if (run.progress == ProgressChoice::Json) terminal.SpeakJson();
}

void TakeStandardInput(const host::Job& job, const RunOptions& run, const Terminal& terminal) {
  if (!host::ReadsStandardInput(job)) return;
  Interruption interruption(terminal);
  host::TakeStandardInput(run.render.memory > 0 ? run.render.memory : host::DefaultMemory(),
                          [&] { return interruption.Context().Stopped(); });
}

host::ExitCode RunJob(const host::Job& job, const GlobalOptions& global, const RunOptions& run, Terminal& terminal,
                      const CLI::App& command) {
  host::CheckStreams(job);
  TakeStandardInput(job, run, terminal);
  Interruption interruption(terminal);
  host::Progress progress(terminal.Stream(), StyleOf(global, run, terminal));
  if (terminal.IsQuiet()) progress.BeQuiet();
  const auto server = LoadServer(global);
  // Before the warnings: a refused job gets none.
  host::CheckValues(job);
  WarnOfValues(job, terminal);
  WarnOfRegion(job, terminal);
  WarnOfMask(job, terminal);
  WarnOfFlatAreas(job, server->Factory(), terminal);
  host::CallTrace trace([&](const std::string& line) { terminal.Note(line); });
  host::RenderOptions options = run.render;
  options.threads = global.threads;
  if (global.verbose > 1 && !global.quiet) options.trace = &trace;
  AdvisedProgress advised(progress, command);
  const auto summary = host::RenderSequence(job, server->Factory(), options, interruption.Context(), advised);
  progress.Finish(summary);
  if (summary.code == host::ExitCode::Interrupted) throw host::Failure(summary.code, "interrupted");
  return summary.code;
}

}  // namespace vblur::cli
