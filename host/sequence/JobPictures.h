// The pictures that a job reads, and the buffers that one frame at a time is read into.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "host/files/PictureFile.h"
#include "host/hosted/HostImage.h"
#include "host/hosted/HostedEffect.h"
#include "host/jobs/FramePattern.h"
#include "host/jobs/Job.h"

namespace vblur::host {

// A picture or a sequence of pictures. A picture without a number is read once and serves every frame. Several
// threads may read at once.
class JobPicture {
 public:
  // The job is borrowed.
  JobPicture(const Job& job, const ImageRecord& record, ReadChoice choice);

  std::filesystem::path FileOf(std::int32_t frame) const;
  // The picture of a frame, in `buffer` or kept from an earlier frame, at the record's place, its colours as they are
  // rendered. Throws Failure (cannot read) that names the file, or FileInterrupted.
  struct Loaded {
    std::filesystem::path file;
    const HostImage* image = nullptr;
    std::shared_ptr<const PictureMetadata> metadata;
    std::vector<std::string> losses;  // as ReadPicture has them
    FileSamples samples{};            // of the first input of a job that keeps it around a region
    Transfer transfer = Transfer::Srgb;
    bool hasPremultipliedColours = false;  // as the file declares
    BeyondRange beyond{};                  // as ReadPicture has it
  };
  // What is read row by row: as ReadingWatch has it.
  struct Watch {
    std::function<void(const Loaded& loaded)> onSize;
    std::function<void(std::int32_t rows)> onRows;
  };
  Loaded Read(PictureReader& reader, std::int32_t frame, std::int32_t depth, HostImage& buffer,
              const Watch* watch = nullptr);
  const ReadChoice& Choice() const { return choice_; }
  // Of every file so far, each time that it was read.
  BeyondRange Beyond() const;

 private:
  ReadPicture ReadInto(PictureReader& reader, std::int32_t frame, std::int32_t depth, HostImage& image,
                       const Watch* watch);
  Loaded Describe(std::int32_t frame, const ReadPicture& read, const HostImage& image) const;

  const Job& job_;
  FramePattern pattern_;
  ImageRecord record_;
  ReadChoice choice_;
  std::mutex keeping_;
  HostImage kept_;
  std::optional<ReadPicture> keptFile_;
  mutable std::mutex counting_;
  BeyondRange beyond_;
};

// What a job reads, shared by all its FrameBuffers.
class JobPictures {
 public:
  // The job is borrowed. No picture may have more pixels.
  explicit JobPictures(const Job& job, std::int64_t mostPixels = ReadChoice::kMostPixels);

  const Job& SourceJob() const { return job_; }
  // The files that a frame reads.
  std::vector<std::filesystem::path> FilesOf(std::int32_t frame) const;
  // The first input at a frame. Throws as ReadPictureInfo does.
  PictureInfo InputInfo(std::int32_t frame) const;
  // What the pictures that a frame reads take in memory at a depth, from their files. Throws as ReadPictureInfo does.
  std::int64_t BytesRead(std::int32_t frame, std::int32_t depth) const;
  // The depth to render at: the job's, that of the first input at this frame, or 16 without an input. Throws Failure
  // (cannot read).
  std::int32_t DepthAt(std::int32_t frame) const;
  // What a depth of 32 has not carried of all that was read so far.
  BeyondRange Beyond() const;

 private:
  friend class FrameBuffers;

  const Job& job_;
  std::optional<JobPicture> input_;
  std::optional<JobPicture> input2_;
  std::optional<JobPicture> mask_;
  std::optional<JobPicture> initial_;
};

// The inputs and the output of one frame; the memory serves the next one. One thread at a time.
class FrameBuffers {
 public:
  // `pictures` is borrowed.
  FrameBuffers(JobPictures& pictures, StopTest stop);

  // Reads the inputs of a frame unless they are loaded, and resets the output. Throws Failure that names the file,
  // or FileInterrupted.
  void Prepare(std::int32_t frame, std::int32_t depth);
  // The same for a job with the first input alone, or with a mask, while others use the input's rows.
  struct Watch {
    // The pictures have their size, and the output is reset. Warnings come later. Not called where that takes all rows.
    std::function<void()> onReady;
    // So many rows of the input are there, from the top on; on any thread.
    std::function<void(std::int32_t rows)> onRows;
  };
  void Prepare(std::int32_t frame, std::int32_t depth, const Watch& watch);
  FramePictures Pictures();
  const HostImage& Output() const { return output_; }
  // That of the first input; null for none.
  const PictureMetadata* Metadata() const { return input_.metadata.get(); }
  // The first input, the second, the mask and the initial picture; empty for those that the job lacks.
  std::array<const JobPicture::Loaded*, 4> Loaded() const { return {&input_, &input2_, &mask_, &initial_}; }
  // Warnings about the pictures of this frame, a line each.
  std::vector<std::string> Warnings() const;

 private:
  void Read(std::int32_t frame, std::int32_t depth);
  void ReadMaskFirst(std::int32_t frame, std::int32_t depth);
  void ResetOutput(std::int32_t depth);

  JobPictures& source_;
  PictureReader reader_;
  std::optional<std::int32_t> frame_;  // whose inputs are loaded
  HostImage inputBuffer_;
  HostImage input2Buffer_;
  HostImage maskBuffer_;
  HostImage initialBuffer_;
  JobPicture::Loaded input_;
  JobPicture::Loaded input2_;
  JobPicture::Loaded mask_;
  JobPicture::Loaded initial_;
  HostImage output_;
};

}  // namespace vblur::host
