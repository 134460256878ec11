#include "host/viewer/FrameSource.h"

#include <utility>

#include "host/hosted/JobFrame.h"

namespace vblur::host {

FrameSource::FrameSource(const Job& job, StopTest stop) : job_(job), reader_(std::move(stop)) {
  using Use = SequenceInput::Use;
  if (job.input) inputEntry_.emplace(job, *job.input, Use::Colour);
  if (job.input2) input2Entry_.emplace(job, *job.input2, Use::Colour);
  if (job.mask) maskEntry_.emplace(job, *job.mask, Use::Mask);
  if (job.output.initial) {
    ImageRecord record;
    record.file = *job.output.initial;
    initialEntry_.emplace(job, record, Use::Colour);
  }
}

SequenceInput::Picture FrameSource::Read(std::optional<Entry>& entry, std::int32_t frame) {
  return entry ? entry->input.Read(reader_, frame, depth_, entry->image) : SequenceInput::Picture{};
}

void FrameSource::SettleDepth(std::int32_t frame) {
  if (job_.depth) {
    depth_ = *job_.depth;
  } else if (inputEntry_) {
    depth_ = ReadPictureInfo(inputEntry_->input.FileOf(frame)).naturalDepth();
  }
}

void FrameSource::Prepare(std::int32_t frame) {
  if (!frame_) SettleDepth(frame);
  if (frame_ != frame) {
    frame_.reset();
    input_ = Read(inputEntry_, frame);
    input2_ = Read(input2Entry_, frame);
    mask_ = Read(maskEntry_, frame);
    initial_ = Read(initialEntry_, frame);
    frame_ = frame;
  }
  std::optional<InitialPicture> initial;
  if (initial_.image != nullptr) initial.emplace(InitialPicture{*initial_.image, initialEntry_->input.FileOf(frame)});
  PrepareOutput(job_, depth_, input_.image, initial, output_);
}

}  // namespace vblur::host
