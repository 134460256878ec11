// Carries out a job: reads the pictures of every frame, has the effect render it and writes the result,
// with the work of neighbouring frames overlapping.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "host/base/Failure.h"
#include "host/hosted/EffectServer.h"
#include "host/hosted/ExecuteContext.h"
#include "host/hosted/HostedEffect.h"
#include "host/jobs/Job.h"

namespace vblur::host {

enum class OnError { Stop, Skip };

struct RenderOptions {
  bool overwrite = false;
  bool skipExisting = false;
  // What a frame that fails does to those behind it. The frames before it are finished in any case.
  OnError onError = OnError::Stop;
  // Threads of the whole run; 0: one for each processor.
  std::int32_t threads = 0;
  // How many frames render side by side; 0: as FramesInFlight picks.
  std::int32_t framesInFlight = 0;
  // What the pictures of frames on their way may take, in bytes, as FramesInFlight reckons it.
  std::int64_t memory = std::int64_t{2} << 30;
  // Where the calls on the effect are noted; null: nowhere.
  CallTrace* trace = nullptr;
};

enum class FrameStatus { Done, Skipped, Failed };

// Busy time of the three stages, in seconds.
struct StageTimes {
  double read = 0.0;
  double render = 0.0;
  double write = 0.0;
};

struct FrameResult {
  std::int64_t index = 0;  // 0 for the first frame of the job
  std::int32_t frame = 0;
  std::filesystem::path file;
  FrameStatus status = FrameStatus::Done;
  // Why a frame failed.
  ExitCode code = ExitCode::Done;
  std::string message;
  StageTimes seconds;
  // As the effect told it; nothing for a frame that was not rendered.
  std::optional<InputOverscan> overscan;
  std::optional<FrameMemoryFacts> memory;
};

struct RenderSummary {
  std::int64_t done = 0;
  std::int64_t skipped = 0;
  std::int64_t failed = 0;
  StageTimes seconds;
  double wallSeconds = 0.0;
  ExitCode code = ExitCode::Done;
};

// Told about each frame when it has come to its end, in order, one call at a time, from a thread of the
// renderer.
class RenderObserver {
 public:
  virtual ~RenderObserver() = default;

  // How many frames there are, and how many of them render side by side.
  virtual void OnStart(std::int64_t frames, std::int32_t framesInFlight) = 0;
  virtual void OnFrame(const FrameResult& result) = 0;
};

// Renders the whole job. `context` may be stopped at any time from any thread: the frame that is being
// rendered or written is given up without a trace. Before the first frame the job is checked, and every
// input and output file name looked at; what is wrong there is thrown as a Failure, and nothing has been
// written. A frame that fails is reported to the observer; the summary's code is then its own code when
// that ended the run, else SomeFramesFailed.
RenderSummary RenderSequence(const Job& job, const EffectFactory& makeEffect, const RenderOptions& options,
                             ExecuteContext& context, RenderObserver& observer);

}  // namespace vblur::host
