#include "host/sequence/SequenceRenderer.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <limits>
#include <list>
#include <new>
#include <optional>
#include <set>
#include <thread>
#include <vector>

#include "host/base/PartFiles.h"
#include "host/base/RealPaths.h"
#include "host/base/StandardStream.h"
#include "host/base/SystemFiles.h"
#include "host/base/Utf8.h"
#include "host/files/OutputFile.h"
#include "host/hosted/CoordMan.h"
#include "host/hosted/FrameBands.h"
#include "host/hosted/JobFrame.h"
#include "host/jobs/JobCheck.h"
#include "host/jobs/JobFiles.h"
#include "host/sequence/FrameMemory.h"
#include "host/sequence/FrameOverlap.h"
#include "host/sequence/FramePipeline.h"
#include "host/sequence/FramesInFlight.h"
#include "host/sequence/JobPictures.h"
#include "host/sequence/Machine.h"
#include "host/sequence/SequenceFiles.h"
#include "host/sequence/WholeOutput.h"

namespace vblur::host {

namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// Adds the time of a scope to a sum.
class Stopwatch {
 public:
  explicit Stopwatch(double& sum) : sum_(sum) {}
  ~Stopwatch() { sum_ += SecondsSince(start_); }
  Stopwatch(const Stopwatch&) = delete;
  Stopwatch& operator=(const Stopwatch&) = delete;

 private:
  double& sum_;
  Clock::time_point start_ = Clock::now();
};

// Thrown to drop a frame when the run ends before it is finished.
struct FrameDropped {};

// A frame in flight; the next one in this slot uses its buffers again.
struct FrameSlot {
  FrameSlot(JobPictures& pictures, const StopTest& stop) : buffers(pictures, stop), writer(stop) {}

  FrameResult result;
  bool dropped = false;
  bool replaces = false;  // the file that exists is not whole
  FrameBuffers buffers;
  std::vector<std::string> warnings;
  PictureWriter writer;
  std::optional<WrittenPicture> written;

  bool IsOpen() const { return !dropped && result.status == FrameStatus::Done; }
};

class SequenceRun {
 public:
  SequenceRun(const Job& job, const EffectFactory& makeEffect, const RenderOptions& options, ExecuteContext& context,
              RenderObserver& observer);

  void CheckFiles() { files_.Check(); }
  RenderSummary Run();

 private:
  // Of those that may be skipped.
  bool IsWhole(FrameSlot& slot) const;
  std::int64_t AllowedMemory() const { return options_.memory > 0 ? options_.memory : DefaultMemory(); }
  SequenceLanes SettleLanes();
  double TimeOfLargestBlur() const;
  void RequireMemoryFor(std::int32_t frame) const;
  void SetUpEffects(const SequenceLanes& lanes);

  template <typename Work>
  void Attempt(FrameSlot& slot, double& seconds, Work work);
  void Fail(FrameSlot& slot, const Failure& failure);
  bool IsOver(std::int64_t index) const { return context_.Stopped() || index > lastIndex_; }

  void Begin(FrameSlot& slot, std::int64_t index);
  void Read(FrameSlot& slot);
  // `steps` are null for a frame that is read and written apart from it, as is `rendered`.
  void Render(HostedEffect& effect, FrameSlot& slot, const BandSteps* steps = nullptr);
  void RequireNoLoss(FrameSlot& slot) const;
  void Write(FrameSlot& slot, const RowProgress* rendered = nullptr);
  void Finish(FrameSlot& slot);
  bool StagesOverlap() const;
  void CarryOverlapped(FrameSlot& slot);
  void CarryAll(const SequenceLanes& lanes);
  std::string NamingOutput(const std::string& warning, const std::string& file) const;
  void Report(FrameSlot& slot);

  const Job& job_;
  const EffectFactory& makeEffect_;
  const RenderOptions& options_;
  ExecuteContext& context_;
  RenderObserver& observer_;
  SequenceFiles files_;
  const FrameList& frames_ = files_.Frames();
  bool usesVectors_ = true;
  std::int32_t writingThreads_ = 1;  // of each file
  CoordMan coordMan_;
  // One for each lane; all but the first are clones of the first and are destroyed before it.
  std::vector<HostedEffect> effects_;
  // The frame whose failure ended the run; frames before it are finished.
  std::atomic<std::int64_t> lastIndex_ = std::numeric_limits<std::int64_t>::max();
  std::set<std::string> warned_;
  RenderSummary summary_;
};

SequenceRun::SequenceRun(const Job& job, const EffectFactory& makeEffect, const RenderOptions& options,
                         ExecuteContext& context, RenderObserver& observer)
    : job_(job),
      makeEffect_(makeEffect),
      options_(options),
      context_(context),
      observer_(observer),
      files_(job, options, [this] { return context_.Stopped(); }),
      coordMan_(job.proxy) {}

bool SequenceRun::IsWhole(FrameSlot& slot) const {
  const std::string flaw = FlawOfOutput(slot.result.file, OutputFormatOf(slot.result.file, files_.Storage()),
                                        files_.ExpectedAt(slot.result.frame), [this] { return context_.Stopped(); });
  if (flaw.empty()) return true;
  slot.replaces = true;
  slot.warnings.push_back(flaw + "; rendered again");
  return false;
}

// From the first frame; if it cannot be read, it fails later.
SequenceLanes SequenceRun::SettleLanes() {
  SequenceLoad load;
  load.frames = frames_.Count();
  load.memory = AllowedMemory();
  load.asked = options_.framesInFlight;
  load.files = FreeFiles();
  load.processors = options_.threads > 0 ? options_.threads
                                         : static_cast<std::int32_t>(std::max(1u, std::thread::hardware_concurrency()));
  try {
    const std::int32_t first = frames_.FrameAt(0);
    usesVectors_ = HostedEffect(makeEffect_()).UsesVectors();
    load.bytesPerFrame =
        EstimateFrameMemory(job_, files_.Pictures(), first, {files_.Depth(), TimeOfLargestBlur(), usesVectors_})
            .Total();
    if (options_.onError == OnError::Stop && !files_.MayBeSkipped(first)) RequireMemoryFor(first);
  } catch (const Failure& failure) {
    if (failure.Kind() == FailureKind::NeedsMemory) throw;
    load.frames = 1;
  }
  return FramesInFlight(load);
}

double SequenceRun::TimeOfLargestBlur() const {
  double time = FrameTime(job_, frames_.FrameAt(0));
  double largest = BlurAt(job_, time);
  for (std::int64_t index = 1; index < frames_.Count(); ++index) {
    const double next = FrameTime(job_, frames_.FrameAt(index));
    if (!(BlurAt(job_, next) > largest)) continue;
    time = next;
    largest = BlurAt(job_, next);
  }
  return time;
}

void SequenceRun::RequireMemoryFor(std::int32_t frame) const {
  const FrameUse use{files_.Depth(), FrameTime(job_, frame), usesVectors_};
  RequireMemory(EstimateFrameMemory(job_, files_.Pictures(), frame, use), AllowedMemory(),
                OutputName(files_.OutputOf(frame)));
}

void SequenceRun::SetUpEffects(const SequenceLanes& lanes) {
  effects_.reserve(static_cast<std::size_t>(lanes.frames) + 1);
  effects_.emplace_back(makeEffect_(), options_.trace);
  effects_.front().SetRenderThreads(lanes.threads);
  writingThreads_ = lanes.threads;
  effects_.front().SetUp(job_, coordMan_, context_);
  // Frames side by side render on clones only: the source that they report to renders nothing meanwhile.
  for (std::int32_t lane = 0; lanes.frames > 1 && lane < lanes.frames; ++lane)
    effects_.push_back(effects_.front().Clone("clone " + std::to_string(lane + 1)));
  for (HostedEffect& effect : effects_)
    effect.BeginFrameRange(FrameTime(job_, frames_.FrameAt(0)), FrameTime(job_, frames_.FrameAt(frames_.Count() - 1)));
}

void SequenceRun::Fail(FrameSlot& slot, const Failure& failure) {
  // Another run has finished the frame meanwhile.
  if (options_.skipExisting && failure.Kind() == FailureKind::FileExists) {
    slot.result.status = FrameStatus::Skipped;
    slot.result.overscan.reset();
    slot.result.memory.reset();
    return;
  }
  slot.result.status = FrameStatus::Failed;
  slot.result.code = failure.Code();
  slot.result.kind = failure.Kind();
  slot.result.message = failure.what() + files_.AboutFrame(slot.result.frame);
  if (options_.onError != OnError::Stop) return;
  std::int64_t last = lastIndex_;
  while (slot.result.index < last && !lastIndex_.compare_exchange_weak(last, slot.result.index)) {
  }
}

template <typename Work>
void SequenceRun::Attempt(FrameSlot& slot, double& seconds, Work work) {
  if (IsOver(slot.result.index)) slot.dropped = true;
  if (!slot.IsOpen()) return;
  const Stopwatch watch(seconds);
  try {
    work();
  } catch (const Failure& failure) {
    Fail(slot, failure);
  } catch (const FileInterrupted&) {
    slot.dropped = true;
  } catch (const FrameDropped&) {
    slot.dropped = true;
  } catch (const std::bad_alloc&) {
    Fail(slot,
         Failure(ExitCode::SomeFramesFailed, OutputName(slot.result.file) + ": not enough memory for this frame"));
  }
}

void SequenceRun::Begin(FrameSlot& slot, std::int64_t index) {
  slot.dropped = false;
  slot.result = FrameResult{};
  slot.result.index = index;
  slot.result.frame = frames_.FrameAt(index);
  slot.result.file = files_.OutputOf(slot.result.frame);
  slot.replaces = false;
  slot.warnings.clear();
  Attempt(slot, slot.result.seconds.read, [&] {
    if (files_.MayBeSkipped(slot.result.frame) && IsWhole(slot)) {
      slot.result.status = FrameStatus::Skipped;
      return;
    }
    RequireMemoryFor(slot.result.frame);
  });
}

void AddLines(const std::vector<std::string>& lines, FrameSlot& slot) {
  slot.warnings.insert(slot.warnings.end(), lines.begin(), lines.end());
}

void SequenceRun::Read(FrameSlot& slot) {
  slot.buffers.Prepare(slot.result.frame, files_.Depth());
  AddLines(slot.buffers.Warnings(), slot);
}

void SequenceRun::Render(HostedEffect& effect, FrameSlot& slot, const BandSteps* steps) {
  const FramePictures pictures = slot.buffers.Pictures();
  const auto keepMemory = [&] {
    // The fields come one after the other: the larger one counts.
    const FrameMemoryFacts memory = effect.FrameMemory();
    if (!slot.result.memory || memory.own > slot.result.memory->own) slot.result.memory = memory;
  };
  const double time = FrameTime(job_, slot.result.frame);
  const auto afterBand = [&](std::int32_t bottom) {
    keepMemory();
    return steps->after(bottom);
  };
  const HRESULT result = steps == nullptr
                             ? RenderFields(effect, job_, pictures, time, context_, keepMemory)
                             : RenderBetween(effect, job_, pictures, time, context_, {steps->before, afterBand});
  if (context_.Stopped()) throw FrameDropped{};
  slot.result.overscan = effect.Overscan();
  const std::string why = effect.WhyNotRendered();
  if (result == kOk && why.empty()) return;
  Refuse(ExitCode::SomeFramesFailed, OutputName(slot.result.file),
         "the effect cannot render this frame" + (result == kOk ? ": " + why : " (" + FormatResult(result) + ")"));
}

void SequenceRun::RequireNoLoss(FrameSlot& slot) const {
  for (const JobPicture::Loaded* read : slot.buffers.Loaded()) {
    const bool isWhole = read->losses.empty() && read->beyond.IsEmpty();
    if (isWhole || !files_.IsReplaced(read->file, slot.result.frame)) continue;
    RefuseLoss(slot.result.file,
               "what cannot be read: " + (read->losses.empty() ? FormatBeyond(read->beyond, LimitsOf(files_.Depth()))
                                                               : read->losses.front()));
  }
}

void SequenceRun::Write(FrameSlot& slot, const RowProgress* rendered) {
  OutputOptions options{options_.overwrite || slot.replaces, options_.sync, files_.Storage()};
  const FileSamples& samples = slot.buffers.Loaded().front()->samples;
  if (const auto region = RegionInInput(job_, slot.buffers.Pictures()); region && samples) {
    options.part = RenderedPart{*region, samples};
  }
  options.threads = writingThreads_;
  options.rendered = rendered;
  slot.written = slot.writer.WriteBeside(slot.result.file, slot.buffers.Output(), slot.buffers.Metadata(), options);
}

// Of several pictures, which one a warning about "output" is about, or the first one.
std::string SequenceRun::NamingOutput(const std::string& warning, const std::string& file) const {
  constexpr std::string_view kPlace = "output: ";
  if (!warning.starts_with(kPlace)) return warning;
  if (frames_.Count() > 1) return warning + " (first in " + file + ")";
  return options_.isOneOfSeveral ? file + ": " + warning.substr(kPlace.size()) : warning;
}

void SequenceRun::Report(FrameSlot& slot) {
  summary_.seconds.read += slot.result.seconds.read;
  summary_.seconds.render += slot.result.seconds.render;
  summary_.seconds.write += slot.result.seconds.write;
  if (slot.dropped) return;
  for (const std::string& warning : slot.warnings) {
    if (warned_.insert(warning).second)
      observer_.OnWarning(slot.result.frame, NamingOutput(warning, OutputName(slot.result.file)));
  }
  switch (slot.result.status) {
    case FrameStatus::Done: ++summary_.done; break;
    case FrameStatus::Skipped: ++summary_.skipped; break;
    case FrameStatus::Failed:
      ++summary_.failed;
      summary_.code = options_.onError == OnError::Stop ? slot.result.code : ExitCode::SomeFramesFailed;
      break;
  }
  observer_.OnFrame(slot.result);
}

// Files get their names in frame order: none after a frame that ends the run.
void SequenceRun::Finish(FrameSlot& slot) {
  Attempt(slot, slot.result.seconds.write, [&] { slot.written->Commit(); });
  slot.written.reset();
  Report(slot);
}

// Of several frames, one is read while others are rendered and written.
bool SequenceRun::StagesOverlap() const {
  const std::int32_t first = frames_.FrameAt(0);
  if (frames_.Count() != 1 || writingThreads_ == 1 || !BandsFollowInput(job_)) return false;
  // What is lost of a picture that the output replaces is known when all of it is read.
  return std::ranges::none_of(files_.Pictures().FilesOf(first),
                              [&](const auto& file) { return files_.IsReplaced(file, first); });
}

void SequenceRun::CarryOverlapped(FrameSlot& slot) {
  Begin(slot, 0);
  bool isRead = false;
  bool isWritten = false;
  double inStages = 0.0;
  Attempt(slot, inStages, [&] {
    OverlapStages stages;
    stages.read = [&](const FrameBuffers::Watch& watch) {
      slot.buffers.Prepare(slot.result.frame, files_.Depth(), watch);
      isRead = true;
    };
    stages.render = [&](const BandSteps& steps) { Render(effects_.front(), slot, &steps); };
    stages.write = [&](const RowProgress& rendered) { Write(slot, &rendered); };
    stages.inputHeight = [&] { return slot.buffers.Pictures().input->Height(); };
    stages.outputHeight = [&] { return slot.buffers.Output().Height(); };
    isWritten = RunOverlapped(stages, slot.result.seconds);
  });
  if (isRead) AddLines(slot.buffers.Warnings(), slot);
  if (!isWritten) {
    Attempt(slot, slot.result.seconds.render, [&] { Render(effects_.front(), slot); });
    Attempt(slot, slot.result.seconds.write, [&] { Write(slot); });
  }
  if (slot.written) AddLines(slot.written->Notes(), slot);
  Finish(slot);
}

void SequenceRun::CarryAll(const SequenceLanes& lanes) {
  // A list: slots do not move.
  std::list<FrameSlot> room;
  std::vector<FrameSlot*> slots;
  slots.reserve(static_cast<std::size_t>(lanes.slots));
  for (std::int32_t slot = 0; slot < lanes.slots; ++slot)
    slots.push_back(&room.emplace_back(files_.Pictures(), [this] { return context_.Stopped(); }));
  if (StagesOverlap()) return CarryOverlapped(*slots.front());
  FrameStages stages;
  stages.read = [&](std::size_t slot, std::int64_t index) {
    FrameSlot& frame = *slots[slot];
    Begin(frame, index);
    Attempt(frame, frame.result.seconds.read, [&] { Read(frame); });
  };
  stages.render = [&](std::size_t lane, std::size_t slot, std::int64_t) {
    HostedEffect& effect = effects_[lanes.frames > 1 ? lane + 1 : 0];
    FrameSlot& frame = *slots[slot];
    Attempt(frame, frame.result.seconds.render, [&] { Render(effect, frame); });
  };
  stages.write = [&](std::size_t slot, std::int64_t) {
    FrameSlot& frame = *slots[slot];
    Attempt(frame, frame.result.seconds.write, [&] {
      RequireNoLoss(frame);
      Write(frame);
      AddLines(frame.written->Notes(), frame);
    });
  };
  stages.report = [&](std::size_t slot, std::int64_t) { Finish(*slots[slot]); };
  stages.goesOn = [&] { return !context_.Stopped() && lastIndex_ == std::numeric_limits<std::int64_t>::max(); };
  RunFramePipeline(static_cast<std::size_t>(lanes.frames), slots.size(), frames_.Count(), stages);
}

RenderSummary SequenceRun::Run() {
  const auto start = Clock::now();
  const SequenceLanes lanes = SettleLanes();
  SetUpEffects(lanes);
  observer_.OnStart(frames_.Count(), lanes.frames);
  CarryAll(lanes);
  // Clones are destroyed before their source.
  for (; !effects_.empty(); effects_.pop_back())
    effects_.back().EndFrameRange();
  // A stop that comes after the last file has changed nothing.
  // A frame that failed may have failed of it, as one to a broken pipe has.
  const bool isComplete = summary_.done + summary_.skipped == frames_.Count();
  if (context_.Stopped() && !isComplete) summary_.code = ExitCode::Interrupted;
  summary_.beyond = files_.Pictures().Beyond();
  summary_.wallSeconds = SecondsSince(start);
  return summary_;
}

}  // namespace

RenderSummary RenderSequence(const Job& job, const EffectFactory& makeEffect, const RenderOptions& options,
                             ExecuteContext& context, RenderObserver& observer) {
  JobCheckOptions check;
  check.outputMayBeInput = options.overwrite;
  CheckJob(job, check);
  SequenceRun run(job, makeEffect, options, context, observer);
  run.CheckFiles();
  return run.Run();
}

}  // namespace vblur::host
