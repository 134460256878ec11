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
#include "host/sequence/FramePipeline.h"
#include "host/sequence/FramesInFlight.h"
#include "host/sequence/JobPictures.h"
#include "host/sequence/Machine.h"
#include "host/sequence/ReplacedInputs.h"
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

  void CheckFiles();
  RenderSummary Run();

 private:
  std::filesystem::path OutputOf(std::int32_t frame) const { return OutputFilePath(job_, outputPattern_, frame); }
  bool MayBeSkipped(std::int32_t frame) const;
  // Of those that may be skipped.
  bool IsWhole(FrameSlot& slot) const;
  ExpectedOutput ExpectedAt(std::int32_t frame) const;
  void CheckInputs(std::int32_t frame);
  bool IsReplaced(const std::filesystem::path& file, std::int32_t frame) const;
  void CheckReplaced(std::int32_t frame);
  void SettleFormat();
  void SettleDepth();
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
  void Render(HostedEffect& effect, FrameSlot& slot);
  void Write(FrameSlot& slot);
  std::string NamingOutput(const std::string& warning, const std::string& file) const;
  void Report(FrameSlot& slot);

  const Job& job_;
  const EffectFactory& makeEffect_;
  const RenderOptions& options_;
  ExecuteContext& context_;
  RenderObserver& observer_;
  const FrameList frames_;
  const FramePattern outputPattern_;
  JobPictures pictures_;
  OutputStorage storage_;
  std::int32_t depth_ = 16;
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
      frames_(ResolveFrames(job)),
      outputPattern_(job.output.file),
      pictures_(job, options.maxPixels),
      storage_(job.output.storage),
      coordMan_(job.proxy) {}

bool SequenceRun::MayBeSkipped(std::int32_t frame) const {
  std::error_code error;
  return options_.skipExisting && !IsStandardStream(OutputOf(frame)) && std::filesystem::exists(OutputOf(frame), error);
}

bool SequenceRun::IsWhole(FrameSlot& slot) const {
  const std::string flaw = FlawOfOutput(slot.result.file, OutputFormatOf(slot.result.file, storage_),
                                        ExpectedAt(slot.result.frame), [this] { return context_.Stopped(); });
  if (flaw.empty()) return true;
  slot.replaces = true;
  slot.warnings.push_back(flaw + "; rendered again");
  return false;
}

// As far as headers have it. Its size is that of the whole picture in formats with windows, of the display window in
// others.
ExpectedOutput SequenceRun::ExpectedAt(std::int32_t frame) const {
  const auto& width = job_.output.width;
  const auto& height = job_.output.height;
  const OutputFormat& format = OutputFormatOf(OutputOf(frame), storage_);
  ExpectedOutput expected;
  if (width && height) expected.sizes = {{*width, *height}};
  if (!job_.input) {
    expected.type = NearestType(format, storage_.type.value_or(TypeForDepth(depth_)));
    return expected;
  }
  try {
    const PictureInfo info = pictures_.InputInfo(frame);
    expected.sizes = {{width.value_or(info.width), height.value_or(info.height)},
                      {width.value_or(info.display.width), height.value_or(info.display.height)}};
    // Where the colours are those of a layer, others come first.
    if (job_.input->layer.empty()) expected.type = OutputTypeOf(info, format, storage_);
    if (!format.hasAnyChannels) return expected;
    for (const int channel : info.passing)
      expected.channels.push_back(info.all[static_cast<std::size_t>(channel)].name);
  } catch (const Failure&) {
    // An input that is missing is no reason to render again.
  }
  return expected;
}

std::string AboutFrame(const FrameList& frames, std::int32_t frame) {
  return frames.Count() > 1 ? " (frame " + std::to_string(frame) + ")" : "";
}

[[noreturn]] void RefuseLoss(const std::filesystem::path& file, const std::string& lost) {
  throw Failure(ExitCode::CannotWrite, Utf8Of(file) + ": cannot write: it is read by this run and would lose " + lost,
                FailureKind::HoldsLess);
}

void SequenceRun::CheckInputs(std::int32_t frame) {
  for (const std::filesystem::path& file : pictures_.FilesOf(frame)) {
    if (const std::string flaw = FlawOfInputName(file); !flaw.empty()) RefuseToRead(file, flaw);
    std::error_code error;
    if (IsStandardStream(file) || std::filesystem::exists(file, error)) continue;
    RefuseToRead(file, "no such file" + AboutFrame(frames_, frame) + FramePattern::Advice(Utf8Of(file.filename())));
  }
}

bool SequenceRun::IsReplaced(const std::filesystem::path& file, std::int32_t frame) const {
  std::error_code error;
  if (IsStandardStream(file) || IsStandardStream(OutputOf(frame))) return false;
  return options_.overwrite && !options_.lossy && std::filesystem::equivalent(file, OutputOf(frame), error);
}

// Refuses to replace a picture that the frame reads by one that holds less, unless the user asks for it.
void SequenceRun::CheckReplaced(std::int32_t frame) {
  const std::vector<std::filesystem::path> files = pictures_.FilesOf(frame);
  for (const std::filesystem::path& file : files) {
    if (!IsReplaced(file, frame)) continue;
    ReplacedInput replaced{file, OutputOf(frame), storage_, {}, false};
    if (job_.input) {
      std::error_code error;
      replaced.input = pictures_.InputInfo(frame);
      replaced.isInput = std::filesystem::equivalent(file, files.front(), error);
    }
    if (const std::string lost = LossesOfReplaced(job_, replaced, depth_); !lost.empty()) {
      RefuseLoss(OutputOf(frame), lost);
    }
  }
}

// The standard output has no extension: it gets the format of the input.
void SequenceRun::SettleFormat() {
  const std::int32_t first = frames_.FrameAt(0);
  if (IsStandardStream(OutputOf(first)) && !storage_.format) {
    storage_.format = ExtensionLike(job_.input ? pictures_.InputInfo(first).format : std::string());
  }
  CheckStorage(OutputOf(first), storage_);
}

void SequenceRun::CheckFiles() {
  SettleFormat();
  if (!IsStandardStream(OutputOf(frames_.FrameAt(0)))) {
    RemoveAbandonedParts(EndOfLinks(OutputOf(frames_.FrameAt(0))).parent_path());
  }
  for (std::int64_t index = 0; index < frames_.Count() && !context_.Stopped(); ++index) {
    const std::int32_t frame = frames_.FrameAt(index);
    // Incomplete outputs are rendered; missing inputs then fail that frame.
    if (MayBeSkipped(frame)) continue;
    if (options_.onError == OnError::Stop) CheckInputs(frame);
    RequireWritable(OutputOf(frame), options_.overwrite || options_.skipExisting);
  }
  SettleDepth();
  for (std::int64_t index = 0; index < frames_.Count() && !context_.Stopped(); ++index) {
    const std::int32_t frame = frames_.FrameAt(index);
    if (options_.overwrite && !MayBeSkipped(frame)) CheckReplaced(frame);
  }
}

// From a frame that is certainly rendered, else from one that may be.
void SequenceRun::SettleDepth() {
  for (const bool exists : {false, true}) {
    for (std::int64_t index = 0; index < frames_.Count(); ++index) {
      const std::int32_t frame = frames_.FrameAt(index);
      if (MayBeSkipped(frame) != exists) continue;
      try {
        depth_ = pictures_.DepthAt(frame);
        return;
      } catch (const Failure&) {
        if (options_.onError == OnError::Stop && !exists) throw;
      }
    }
  }
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
        EstimateFrameMemory(job_, pictures_, first, {depth_, TimeOfLargestBlur(), usesVectors_}).Total();
    if (options_.onError == OnError::Stop && !MayBeSkipped(first)) RequireMemoryFor(first);
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
  const FrameUse use{depth_, FrameTime(job_, frame), usesVectors_};
  RequireMemory(EstimateFrameMemory(job_, pictures_, frame, use), AllowedMemory(), OutputName(OutputOf(frame)));
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
  slot.result.message = failure.what() + AboutFrame(frames_, slot.result.frame);
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
  slot.result.file = OutputOf(slot.result.frame);
  slot.replaces = false;
  slot.warnings.clear();
  Attempt(slot, slot.result.seconds.read, [&] {
    if (MayBeSkipped(slot.result.frame) && IsWhole(slot)) {
      slot.result.status = FrameStatus::Skipped;
      return;
    }
    RequireMemoryFor(slot.result.frame);
    slot.buffers.Prepare(slot.result.frame, depth_);
    const auto warnings = slot.buffers.Warnings();
    slot.warnings.insert(slot.warnings.end(), warnings.begin(), warnings.end());
  });
}

void SequenceRun::Render(HostedEffect& effect, FrameSlot& slot) {
  const FramePictures pictures = slot.buffers.Pictures();
  const auto keepMemory = [&] {
    // The fields come one after the other: the larger one counts.
    const FrameMemoryFacts memory = effect.FrameMemory();
    if (!slot.result.memory || memory.own > slot.result.memory->own) slot.result.memory = memory;
  };
  const double time = FrameTime(job_, slot.result.frame);
  const HRESULT result = RenderFields(effect, job_, pictures, time, context_, keepMemory);
  if (context_.Stopped()) throw FrameDropped{};
  slot.result.overscan = effect.Overscan();
  const std::string why = effect.WhyNotRendered();
  if (result == kOk && why.empty()) return;
  Refuse(ExitCode::SomeFramesFailed, OutputName(slot.result.file),
         "the effect cannot render this frame" + (result == kOk ? ": " + why : " (" + FormatResult(result) + ")"));
}

void SequenceRun::Write(FrameSlot& slot) {
  for (const JobPicture::Loaded* read : slot.buffers.Loaded()) {
    const bool isWhole = read->losses.empty() && read->beyond.IsEmpty();
    if (isWhole || !IsReplaced(read->file, slot.result.frame)) continue;
    RefuseLoss(slot.result.file,
               "what cannot be read: " +
                   (read->losses.empty() ? FormatBeyond(read->beyond, LimitsOf(depth_)) : read->losses.front()));
  }
  OutputOptions options{options_.overwrite || slot.replaces, options_.sync, storage_};
  const FileSamples& samples = slot.buffers.Loaded().front()->samples;
  if (const auto region = RegionInInput(job_, slot.buffers.Pictures()); region && samples) {
    options.part = RenderedPart{*region, samples};
  }
  options.threads = writingThreads_;
  slot.written = slot.writer.WriteBeside(slot.result.file, slot.buffers.Output(), slot.buffers.Metadata(), options);
  const auto& notes = slot.written->Notes();
  slot.warnings.insert(slot.warnings.end(), notes.begin(), notes.end());
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

RenderSummary SequenceRun::Run() {
  const auto start = Clock::now();
  const SequenceLanes lanes = SettleLanes();
  SetUpEffects(lanes);
  observer_.OnStart(frames_.Count(), lanes.frames);
  // A list: slots do not move.
  std::list<FrameSlot> room;
  std::vector<FrameSlot*> slots;
  slots.reserve(static_cast<std::size_t>(lanes.slots));
  for (std::int32_t slot = 0; slot < lanes.slots; ++slot)
    slots.push_back(&room.emplace_back(pictures_, [this] { return context_.Stopped(); }));
  FrameStages stages;
  stages.read = [&](std::size_t slot, std::int64_t index) { Begin(*slots[slot], index); };
  stages.render = [&](std::size_t lane, std::size_t slot, std::int64_t) {
    HostedEffect& effect = effects_[lanes.frames > 1 ? lane + 1 : 0];
    FrameSlot& frame = *slots[slot];
    Attempt(frame, frame.result.seconds.render, [&] { Render(effect, frame); });
  };
  stages.write = [&](std::size_t slot, std::int64_t) {
    FrameSlot& frame = *slots[slot];
    Attempt(frame, frame.result.seconds.write, [&] { Write(frame); });
  };
  // Files get their names in frame order: none after a frame that ends the run.
  stages.report = [&](std::size_t slot, std::int64_t) {
    FrameSlot& frame = *slots[slot];
    Attempt(frame, frame.result.seconds.write, [&] { frame.written->Commit(); });
    frame.written.reset();
    Report(frame);
  };
  stages.goesOn = [&] { return !context_.Stopped() && lastIndex_ == std::numeric_limits<std::int64_t>::max(); };
  RunFramePipeline(static_cast<std::size_t>(lanes.frames), slots.size(), frames_.Count(), stages);
  // Clones are destroyed before their source.
  for (; !effects_.empty(); effects_.pop_back())
    effects_.back().EndFrameRange();
  // A stop that comes after the last file has changed nothing.
  // A frame that failed may have failed of it, as one to a broken pipe has.
  const bool isComplete = summary_.done + summary_.skipped == frames_.Count();
  if (context_.Stopped() && !isComplete) summary_.code = ExitCode::Interrupted;
  summary_.beyond = pictures_.Beyond();
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
