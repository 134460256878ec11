#include "host/sequence/JobPictures.h"

#include <string_view>
#include <utility>

#include "host/base/Failure.h"
#include "host/base/StandardStream.h"
#include "host/files/PictureInfo.h"
#include "host/hosted/JobFrame.h"
#include "host/hosted/LinearLight.h"
#include "host/hosted/Premultiply.h"
#include "host/jobs/JobFiles.h"

namespace vblur::host {

JobPicture::JobPicture(const Job& job, const ImageRecord& record, ReadChoice choice)
    : job_(job), pattern_(record.file), record_(record), choice_(std::move(choice)) {}

std::filesystem::path JobPicture::FileOf(std::int32_t frame) const {
  return JobFilePath(job_, pattern_, frame);
}

namespace {

// Premultiplied colours that are multiplied once more are taken as they are.
bool HasPremultipliedColours(const Job& job, const ReadPicture& read) {
  return read.associatedAlpha && !job.premultipliesAround;
}

// From the colours of the file to those that are rendered, some rows after the others.
class ColourConversion {
 public:
  ColourConversion(const Job& job, const std::filesystem::path& path, HostImage& image)
      : job_(job), path_(path), image_(image) {}

  // When it is known what the file declares, before any rows.
  void Begin(const ReadPicture& read) {
    if (job_.linear && read.info.transfer == Transfer::Other)
      Refuse("linear", InputName(path_) + ": its colours are logarithmic, expected sRGB or linear light");
    decodes_ = job_.linear && read.info.transfer == Transfer::Srgb;
    isPremultiplied_ = HasPremultipliedColours(job_, read);
    left_ = image_.Height();
  }

  // So many rows, from the top on, are there.
  void Reach(std::int32_t rows) {
    const HostRows next{image_.Height() - rows, left_};
    left_ = next.begin;
    if (decodes_) DecodeColours(image_, next, isPremultiplied_);
    if (!job_.premultipliesAround) return;
    hidesColours_ = hidesColours_ || HasHiddenColours(image_, next);
    MultiplyByAlpha(image_, next);
  }

  // Adds what is lost, after the last rows.
  void End(ReadPicture& read) const {
    if (hidesColours_)
      read.losses.push_back(InputName(path_) + ": colours under transparent pixels are lost by premultiply around");
  }

 private:
  const Job& job_;
  const std::filesystem::path& path_;
  HostImage& image_;
  bool decodes_ = false;
  bool isPremultiplied_ = false;
  bool hidesColours_ = false;
  std::int32_t left_ = 0;  // rows from the bottom on are not converted
};

}  // namespace

ReadPicture JobPicture::ReadInto(PictureReader& reader, std::int32_t frame, std::int32_t depth, HostImage& image,
                                 const Watch* watch) {
  const auto path = FileOf(frame);
  ColourConversion colours(job_, path, image);
  bool isWatched = false;
  ReadingWatch rows;
  if (watch != nullptr) {
    rows.onSize = [&](const ReadPicture& read) {
      image.Place(record_);
      isWatched = true;
      colours.Begin(read);
      watch->onSize(Describe(frame, read, image));
    };
    rows.onRows = [&](std::int32_t count) {
      colours.Reach(count);
      watch->onRows(count);
    };
  }
  auto read = choice_.use == PictureUse::Mask
                  ? reader.ReadMask(path, depth, image, choice_)
                  : reader.ReadColour(path, depth, image, choice_, watch != nullptr ? &rows : nullptr);
  if (choice_.use == PictureUse::Colour) {
    if (!isWatched) {
      colours.Begin(read);
      colours.Reach(image.Height());
    }
    colours.End(read);
  }
  if (!isWatched) image.Place(record_);
  const std::lock_guard hold(counting_);
  beyond_.Add(read.beyond);
  return read;
}

BeyondRange JobPicture::Beyond() const {
  const std::lock_guard hold(counting_);
  return beyond_;
}

JobPicture::Loaded JobPicture::Describe(std::int32_t frame, const ReadPicture& read, const HostImage& image) const {
  return {FileOf(frame),
          &image,
          read.metadata,
          read.losses,
          read.samples,
          read.info.transfer,
          HasPremultipliedColours(job_, read),
          read.beyond};
}

JobPicture::Loaded JobPicture::Read(PictureReader& reader, std::int32_t frame, std::int32_t depth, HostImage& buffer,
                                    const Watch* watch) {
  if (pattern_.HasNumber()) return Describe(frame, ReadInto(reader, frame, depth, buffer, watch), buffer);
  const std::lock_guard hold(keeping_);
  if (!keptFile_) keptFile_ = ReadInto(reader, frame, depth, kept_, watch);
  return Describe(frame, *keptFile_, kept_);
}

namespace {

std::string SizeText(DSPixelPair size) {
  return std::to_string(size.x) + " x " + std::to_string(size.y) + " pixels";
}

// Nothing for an offset, which says where the picture lies.
void AddUnlike(std::string_view field, const HostImage* image, const HostImage* input, bool hasOffset,
               std::vector<std::string>& warnings) {
  if (image == nullptr || input == nullptr || hasOffset) return;
  const DSPixelPair own = image->FrameSize();
  const DSPixelPair other = input->FrameSize();
  if (own.x == other.x && own.y == other.y) return;
  warnings.push_back(std::string(field) + ": its frame of " + SizeText(own) +
                     " lies on the input's lower left corner, " + "whose frame has " + SizeText(other));
}

}  // namespace

JobPictures::JobPictures(const Job& job, std::int64_t mostPixels) : job_(job) {
  ReadChoice colours;
  colours.mostPixels = mostPixels;
  ReadChoice first = colours;
  first.keepsPassing = true;
  first.keepsSamples = job.roi && job.outside != OutsideChoice::Clear && !job.output.initial;
  first.changesPixels = job.linear || job.premultipliesAround;
  ReadChoice amounts = colours;
  amounts.use = PictureUse::Mask;
  if (job.output.initial) {
    ImageRecord record;
    record.file = *job.output.initial;
    initial_.emplace(job, record, colours);
  }
  if (job.input) {
    first.layer = job.input->layer;
    input_.emplace(job, *job.input, first);
  }
  if (job.input2) {
    colours.layer = job.input2->layer;
    input2_.emplace(job, *job.input2, colours);
  }
  if (job.mask) {
    amounts.channel = job.mask->channel;
    mask_.emplace(job, *job.mask, amounts);
  }
}

std::vector<std::filesystem::path> JobPictures::FilesOf(std::int32_t frame) const {
  std::vector<std::filesystem::path> files;
  for (const auto* picture : {&input_, &input2_, &mask_, &initial_}) {
    if (*picture) files.push_back((*picture)->FileOf(frame));
  }
  return files;
}

std::int64_t JobPictures::BytesRead(std::int32_t frame, std::int32_t depth) const {
  std::int64_t bytes = 0;
  for (const auto* picture : {&input_, &input2_, &mask_, &initial_}) {
    if (!*picture) continue;
    const ReadChoice& choice = (*picture)->Choice();
    const PictureInfo info = ReadPictureInfo((*picture)->FileOf(frame), choice);
    const std::int64_t components = choice.use == PictureUse::Mask ? 1 : 4;
    bytes += std::int64_t{info.width} * info.height * components * (depth / 8);
    if (choice.KeepsSamplesOf(info, depth)) {
      const std::int64_t pixelBytes = info.Taken().count * static_cast<std::int64_t>(SampleBytes(info.samples));
      bytes += std::int64_t{info.data.width} * info.data.height * pixelBytes;
    }
    if (choice.keepsPassing) {
      bytes += std::int64_t{info.data.width} * info.data.height * static_cast<std::int64_t>(info.PassingBytes());
    }
  }
  return bytes;
}

std::int32_t JobPictures::DepthAt(std::int32_t frame) const {
  constexpr std::int32_t kWithoutInput = 16;
  if (const auto depth = job_.RenderDepth()) return *depth;
  return input_ ? InputInfo(frame).NaturalDepth() : kWithoutInput;
}

BeyondRange JobPictures::Beyond() const {
  BeyondRange beyond;
  for (const auto* picture : {&input_, &input2_, &mask_, &initial_}) {
    if (*picture) beyond.Add((*picture)->Beyond());
  }
  return beyond;
}

PictureInfo JobPictures::InputInfo(std::int32_t frame) const {
  return ReadPictureInfo(input_->FileOf(frame), input_->Choice());
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

FramePictures FrameBuffers::Pictures() {
  FramePictures pictures{&output_, input_.image, input2_.image, mask_.image};
  // The output is what the input was.
  pictures.encodesColours = source_.SourceJob().linear && input_.image != nullptr && input_.transfer == Transfer::Srgb;
  pictures.hasPremultipliedColours = input_.hasPremultipliedColours;
  return pictures;
}

std::vector<std::string> FrameBuffers::Warnings() const {
  std::vector<std::string> warnings;
  for (const JobPicture::Loaded* picture : Loaded())
    warnings.insert(warnings.end(), picture->losses.begin(), picture->losses.end());
  const Job& job = source_.SourceJob();
  if (job.linear && input_.image != nullptr && input_.transfer == Transfer::Linear) {
    warnings.emplace_back("linear: the input holds linear light already; it is rendered as without");
  }
  if (job.input && job.input2) {
    AddUnlike("input2", input2_.image, input_.image, job.input2->origin != job.input->origin, warnings);
  }
  if (job.mask) AddUnlike("mask", mask_.image, input_.image, job.mask->offset != MaskRecord{}.offset, warnings);
  return warnings;
}

void FrameBuffers::ResetOutput(std::int32_t depth) {
  std::optional<InitialPicture> initial;
  if (initial_.image != nullptr) initial.emplace(InitialPicture{*initial_.image, initial_.file});
  PrepareOutput(source_.SourceJob(), depth, input_.image, initial, output_);
}

void FrameBuffers::Prepare(std::int32_t frame, std::int32_t depth) {
  if (frame_ != frame) Read(frame, depth);
  ResetOutput(depth);
}

// Bands need all of it.
void FrameBuffers::ReadMaskFirst(std::int32_t frame, std::int32_t depth) {
  mask_ = {};
  if (!source_.mask_) return;
  try {
    mask_ = source_.mask_->Read(reader_, frame, depth, maskBuffer_);
  } catch (const Failure&) {
    // An input that cannot be read either is told first.
    source_.input_->Read(reader_, frame, depth, inputBuffer_);
    throw;
  }
}

void FrameBuffers::Prepare(std::int32_t frame, std::int32_t depth, const Watch& watch) {
  bool isReady = false;
  const JobPicture::Watch rows{[&](const JobPicture::Loaded& loaded) {
                                 input_ = loaded;
                                 ResetOutput(depth);
                                 isReady = true;
                                 watch.onReady();
                               },
                               watch.onRows};
  frame_.reset();
  ReadMaskFirst(frame, depth);
  const JobPicture::Loaded read = source_.input_->Read(reader_, frame, depth, inputBuffer_, &rows);
  if (isReady) {
    // The rest is in use.
    input_.losses = read.losses;
    input_.beyond = read.beyond;
  } else {
    input_ = read;
    ResetOutput(depth);
  }
  frame_ = frame;
}

}  // namespace vblur::host
