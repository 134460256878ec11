// The files of a run: their names, which of them may be skipped or replaced, and what is checked before any is written.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "host/files/OutputFormat.h"
#include "host/files/PictureFile.h"
#include "host/jobs/FramePattern.h"
#include "host/jobs/Job.h"
#include "host/jobs/JobCheck.h"
#include "host/sequence/JobPictures.h"
#include "host/sequence/WholeOutput.h"

namespace vblur::host {

struct RenderOptions;

class SequenceFiles {
 public:
  // The job and the options are borrowed.
  SequenceFiles(const Job& job, const RenderOptions& options, StopTest stop);

  // Settles the format and the depth, and throws Failure for a file that cannot be read or written. Ends early once
  // the run is stopped.
  void Check();

  const FrameList& Frames() const { return frames_; }
  JobPictures& Pictures() { return pictures_; }
  const JobPictures& Pictures() const { return pictures_; }
  const OutputStorage& Storage() const { return storage_; }
  std::int32_t Depth() const { return depth_; }
  std::filesystem::path OutputOf(std::int32_t frame) const;
  // Of several frames, which one.
  std::string AboutFrame(std::int32_t frame) const;
  bool MayBeSkipped(std::int32_t frame) const;
  ExpectedOutput ExpectedAt(std::int32_t frame) const;
  // Whether the frame's output takes the place of a file that it reads, and may not lose anything of it.
  bool IsReplaced(const std::filesystem::path& file, std::int32_t frame) const;

 private:
  void CheckInputs(std::int32_t frame);
  void CheckReplaced(std::int32_t frame);
  void SettleFormat();
  void SettleDepth();

  const Job& job_;
  const RenderOptions& options_;
  const StopTest stop_;
  const FrameList frames_;
  const FramePattern outputPattern_;
  JobPictures pictures_;
  OutputStorage storage_;
  std::int32_t depth_ = 16;
};

[[noreturn]] void RefuseLoss(const std::filesystem::path& file, const std::string& lost);

}  // namespace vblur::host
