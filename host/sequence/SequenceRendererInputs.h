// The pictures that a job reads, frame by frame, for SequenceRenderer.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>

#include "host/files/PictureFile.h"
#include "host/hosted/HostImage.h"
#include "host/jobs/FramePattern.h"
#include "host/jobs/Job.h"

namespace vblur::host {

// One picture or sequence of pictures. A picture without a number is read once and serves every frame.
// Frames on several threads may be read at once.
class SequenceInput {
 public:
  enum class Use { Colour, Mask };

  SequenceInput(const Job& job, const ImageRecord& record, Use use);

  std::filesystem::path FileOf(std::int32_t frame) const;
  // The picture of a frame, in `slot` or kept from an earlier frame, at the record's place. Throws Failure
  // (cannot read) that names file and frame.
  struct Picture {
    const HostImage* image = nullptr;
    std::shared_ptr<const PictureMetadata> metadata;
  };
  Picture Read(PictureReader& reader, std::int32_t frame, std::int32_t depth, HostImage& slot);

 private:
  ReadPicture ReadInto(PictureReader& reader, std::int32_t frame, std::int32_t depth, HostImage& image) const;

  std::filesystem::path folder_;
  FramePattern pattern_;
  ImageRecord record_;
  Use use_;
  std::mutex keeping_;
  HostImage kept_;
  std::optional<ReadPicture> keptFile_;
};

// A file name of a job, in the job's folder unless it is absolute.
std::filesystem::path JobFilePath(const Job& job, const FramePattern& pattern, std::int32_t frame);

}  // namespace vblur::host
