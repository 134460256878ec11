#include "host/sequence/JobPictures.h"

#include <utility>

#include "host/files/PictureInfo.h"
#include "host/hosted/JobFrame.h"
#include "host/jobs/JobFiles.h"

namespace vblur::host {

JobPicture::JobPicture(const Job& job, const ImageRecord& record, Use use)
    : job_(job), pattern_(record.file), record_(record), use_(use) {}

std::filesystem::path JobPicture::FileOf(std::int32_t frame) const {
  return JobFilePath(job_, pattern_, frame);
}

ReadPicture JobPicture::ReadInto(PictureReader& reader, std::int32_t frame, std::int32_t depth,
                                 HostImage& image) const {
  const auto path = FileOf(frame);
  auto read = use_ == Use::Mask ? reader.ReadMask(path, depth, image) : reader.ReadColour(path, depth, image);
  image.Place(record_);
  return read;
}

JobPicture::Loaded JobPicture::Read(PictureReader& reader, std::int32_t frame, std::int32_t depth, HostImage& buffer) {
  if (pattern_.HasNumber()) return {&buffer, ReadInto(reader, frame, depth, buffer).metadata};
  const std::lock_guard hold(keeping_);
  if (!keptFile_) keptFile_ = ReadInto(reader, frame, depth, kept_);
  return {&kept_, keptFile_->metadata};
}

JobPictures::JobPictures(const Job& job) : job_(job) {
  using Use = JobPicture::Use;
  if (job.input) input_.emplace(job, *job.input, Use::Colour);
  if (job.input2) input2_.emplace(job, *job.input2, Use::Colour);
  if (job.mask) mask_.emplace(job, *job.mask, Use::Mask);
  if (job.output.initial) {
    ImageRecord record;
    record.file = *job.output.initial;
    initial_.emplace(job, record, Use::Colour);
  }
}

std::vector<std::filesystem::path> JobPictures::FilesOf(std::int32_t frame) const {
  std::vector<std::filesystem::path> files;
  for (const auto* picture : {&input_, &input2_, &mask_, &initial_}) {
    if (*picture) files.push_back((*picture)->FileOf(frame));
  }
  return files;
}

std::int32_t JobPictures::DepthAt(std::int32_t frame) const {
  constexpr std::int32_t kWithoutInput = 16;
  if (job_.depth) return *job_.depth;
  return input_ ? ReadPictureInfo(input_->FileOf(frame)).NaturalDepth() : kWithoutInput;
}

FrameBuffers::FrameBuffers(JobPictures& pictures, StopTest stop) : source_(pictures), reader_(std::move(stop)) {}

void FrameBuffers::Read(std::int32_t frame, std::int32_t depth) {
  const auto read = [&](std::optional<JobPicture>& picture, HostImage& buffer) {
    return picture ? picture->Read(reader_, frame, depth, buffer) : JobPicture::Loaded{};
  };
  frame_.reset();
  input_ = read(source_.input_, inputBuffer_);
  input2_ = read(source_.input2_, input2Buffer_);
  mask_ = read(source_.mask_, maskBuffer_);
  initial_ = read(source_.initial_, initialBuffer_);
  frame_ = frame;
}

void FrameBuffers::Prepare(std::int32_t frame, std::int32_t depth) {
  if (frame_ != frame) Read(frame, depth);
  std::optional<InitialPicture> initial;
  if (initial_.image != nullptr) initial.emplace(InitialPicture{*initial_.image, source_.initial_->FileOf(frame)});
  PrepareOutput(source_.SourceJob(), depth, input_.image, initial, output_);
}

}  // namespace vblur::host
