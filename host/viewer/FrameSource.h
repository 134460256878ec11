// The pictures of a job's current frame; reads them when the frame changes.
#pragma once

#include <cstdint>
#include <optional>

#include "host/files/PictureFile.h"
#include "host/hosted/HostedEffect.h"
#include "host/jobs/Job.h"
#include "host/sequence/SequenceRendererInputs.h"

namespace vblur::host {

class FrameSource {
 public:
  // The job is borrowed.
  FrameSource(const Job& job, StopTest stop);

  // Reads the inputs of a frame unless they are loaded, and resets the output. Throws like SequenceRenderer, and
  // FileInterrupted.
  void Prepare(std::int32_t frame);
  // The inputs and the output to render into.
  FramePictures pictures() { return {&output_, input_.image, input2_.image, mask_.image}; }
  const HostImage& output() const { return output_; }

 private:
  struct Entry {
    Entry(const Job& job, const ImageRecord& record, SequenceInput::Use use) : input(job, record, use) {}

    SequenceInput input;
    HostImage image;
  };

  SequenceInput::Picture Read(std::optional<Entry>& entry, std::int32_t frame);
  void SettleDepth(std::int32_t frame);

  const Job& job_;
  PictureReader reader_;
  std::optional<Entry> inputEntry_;
  std::optional<Entry> input2Entry_;
  std::optional<Entry> maskEntry_;
  std::optional<Entry> initialEntry_;
  SequenceInput::Picture input_;
  SequenceInput::Picture input2_;
  SequenceInput::Picture mask_;
  SequenceInput::Picture initial_;
  HostImage output_;
  std::optional<std::int32_t> frame_;
  std::int32_t depth_ = 16;
};

}  // namespace vblur::host
