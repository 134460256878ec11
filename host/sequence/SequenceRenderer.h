// Renders a job: reads, renders and writes its frames, with several frames in flight.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "host/base/Failure.h"
#include "host/files/PictureInfo.h"
#include "host/hosted/EffectServer.h"
#include "host/hosted/ExecuteContext.h"
#include "host/hosted/HostedEffect.h"
#include "host/jobs/Job.h"
#include "host/sequence/StageTimes.h"

namespace vblur::host {

enum class OnError { Stop, Skip };

struct RenderOptions {
  bool overwrite = false;
  // With `overwrite`: a picture that the frame reads may be replaced by one that holds less.
  bool lossy = false;
  // Leaves files that exist and are whole, of the frame's size as far as that is known; replaces others with a warning.
  // A file that appears while its frame is rendered is left, too.
  bool skipExisting = false;
  // Whether every file is on its disk before it takes its name.
  bool sync = true;
  // Whether frames after a failed one are rendered. Frames before it are always finished.
  OnError onError = OnError::Stop;
  // Threads in total; 0: one per processor.
  std::int32_t threads = 0;
  // Frames that render side by side; 0: as FramesInFlight picks.
  std::int32_t framesInFlight = 0;
  // Limit for reading, rendering and writing all frames in flight, in bytes; 0: DefaultMemory.
  std::int64_t memory = 0;
  // No picture that is read may have more pixels.
  std::int64_t maxPixels = ReadChoice::kMostPixels;
  // Whether the job is one of several of a run: what is told of its output names the file.
  bool isOneOfSeveral = false;
  // Logs the calls on the effect; may be null.
  CallTrace* trace = nullptr;
};

enum class FrameStatus { Done, Skipped, Failed };

struct FrameResult {
  std::int64_t index = 0;  // 0 for the first frame of the job
  std::int32_t frame = 0;
  std::filesystem::path file;
  FrameStatus status = FrameStatus::Done;
  // Why a frame failed.
  ExitCode code = ExitCode::Done;
  FailureKind kind = FailureKind::Other;
  std::string message;
  StageTimes seconds;
  // From the effect; nothing for a frame that was not rendered.
  std::optional<InputOverscan> overscan;
  std::optional<FrameMemoryFacts> memory;
};

struct RenderSummary {
  std::int64_t done = 0;
  std::int64_t skipped = 0;
  std::int64_t failed = 0;
  StageTimes seconds;
  double wallSeconds = 0.0;
  // What a depth of 32 has not carried of the pictures that were read.
  BeyondRange beyond{};
  ExitCode code = ExitCode::Done;
};

// Notified of each finished frame, in order, one call at a time, on a thread of the renderer.
class RenderObserver {
 public:
  virtual ~RenderObserver() = default;

  // The number of frames, and how many render side by side.
  virtual void OnStart(std::int64_t frames, std::int32_t framesInFlight) = 0;
  virtual void OnFrame(const FrameResult& result) = 0;
  // What is lost or looks like a mistake, before the frame's OnFrame. Each text once in a run.
  virtual void OnWarning(std::int32_t frame, const std::string& text) = 0;
};

// Renders the whole job. `context` may be stopped at any time from any thread; unfinished frames then leave no files.
// Checks the job and all its file names first and throws Failure before anything is written. A frame that fails is
// reported to the observer; the summary's code is its code when it ended the run, else SomeFramesFailed.
RenderSummary RenderSequence(const Job& job, const EffectFactory& makeEffect, const RenderOptions& options,
                             ExecuteContext& context, RenderObserver& observer);

}  // namespace vblur::host
