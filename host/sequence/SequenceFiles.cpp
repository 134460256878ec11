#include "host/sequence/SequenceFiles.h"

#include <optional>
#include <system_error>

#include "host/base/PartFiles.h"
#include "host/base/RealPaths.h"
#include "host/base/StandardStream.h"
#include "host/base/SystemFiles.h"
#include "host/base/Utf8.h"
#include "host/files/OutputFile.h"
#include "host/jobs/JobFiles.h"
#include "host/sequence/ReplacedInputs.h"
#include "host/sequence/SequenceRenderer.h"

namespace vblur::host {

SequenceFiles::SequenceFiles(const Job& job, const RenderOptions& options, StopTest stop)
    : job_(job),
      options_(options),
      stop_(std::move(stop)),
      frames_(ResolveFrames(job)),
      outputPattern_(job.output.file),
      pictures_(job, options.maxPixels),
      storage_(job.output.storage) {}

std::filesystem::path SequenceFiles::OutputOf(std::int32_t frame) const {
  return OutputFilePath(job_, outputPattern_, frame);
}

std::string SequenceFiles::AboutFrame(std::int32_t frame) const {
  return frames_.Count() > 1 ? " (frame " + std::to_string(frame) + ")" : "";
}

void RefuseLoss(const std::filesystem::path& file, const std::string& lost) {
  throw Failure(ExitCode::CannotWrite, Utf8Of(file) + ": cannot write: it is read by this run and would lose " + lost,
                FailureKind::HoldsLess);
}

bool SequenceFiles::MayBeSkipped(std::int32_t frame) const {
  std::error_code error;
  return options_.skipExisting && !IsStandardStream(OutputOf(frame)) && std::filesystem::exists(OutputOf(frame), error);
}

// As far as headers have it. Its size is that of the whole picture in formats with windows, of the display window in
// others.
ExpectedOutput SequenceFiles::ExpectedAt(std::int32_t frame) const {
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

void SequenceFiles::CheckInputs(std::int32_t frame) {
  for (const std::filesystem::path& file : pictures_.FilesOf(frame)) {
    if (const std::string flaw = FlawOfInputName(file); !flaw.empty()) RefuseToRead(file, flaw);
    std::error_code error;
    if (IsStandardStream(file) || std::filesystem::exists(file, error)) continue;
    RefuseToRead(file, "no such file" + AboutFrame(frame) + FramePattern::Advice(Utf8Of(file.filename())));
  }
}

bool SequenceFiles::IsReplaced(const std::filesystem::path& file, std::int32_t frame) const {
  std::error_code error;
  if (IsStandardStream(file) || IsStandardStream(OutputOf(frame))) return false;
  return options_.overwrite && !options_.lossy && std::filesystem::equivalent(file, OutputOf(frame), error);
}

// Refuses to replace a picture that the frame reads by one that holds less, unless the user asks for it.
void SequenceFiles::CheckReplaced(std::int32_t frame) {
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
void SequenceFiles::SettleFormat() {
  const std::int32_t first = frames_.FrameAt(0);
  if (IsStandardStream(OutputOf(first)) && !storage_.format) {
    storage_.format = ExtensionLike(job_.input ? pictures_.InputInfo(first).format : std::string());
  }
  CheckStorage(OutputOf(first), storage_);
}

void SequenceFiles::Check() {
  SettleFormat();
  if (!IsStandardStream(OutputOf(frames_.FrameAt(0)))) {
    RemoveAbandonedParts(EndOfLinks(OutputOf(frames_.FrameAt(0))).parent_path());
  }
  for (std::int64_t index = 0; index < frames_.Count() && !stop_(); ++index) {
    const std::int32_t frame = frames_.FrameAt(index);
    // Incomplete outputs are rendered; missing inputs then fail that frame.
    if (MayBeSkipped(frame)) continue;
    if (options_.onError == OnError::Stop) CheckInputs(frame);
    RequireWritable(OutputOf(frame), options_.overwrite || options_.skipExisting);
  }
  SettleDepth();
  for (std::int64_t index = 0; index < frames_.Count() && !stop_(); ++index) {
    const std::int32_t frame = frames_.FrameAt(index);
    if (options_.overwrite && !MayBeSkipped(frame)) CheckReplaced(frame);
  }
}

// From a frame that is certainly rendered, else from one that may be.
void SequenceFiles::SettleDepth() {
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

}  // namespace vblur::host
