#include "host/sequence/SequenceRendererInputs.h"

namespace vblur::host {

namespace {

std::filesystem::path InFolder(const std::filesystem::path& folder, const std::string& name) {
  // "./x" reads worse than "x" in every message.
  return folder == "." || folder.empty() ? std::filesystem::path(name) : folder / name;
}

}  // namespace

std::filesystem::path JobFilePath(const Job& job, const FramePattern& pattern, std::int32_t frame) {
  return InFolder(job.folder, pattern.FileName(frame));
}

SequenceInput::SequenceInput(const Job& job, const ImageRecord& record, Use use)
    : folder_(job.folder), pattern_(record.file), record_(record), use_(use) {}

std::filesystem::path SequenceInput::FileOf(std::int32_t frame) const {
  return InFolder(folder_, pattern_.FileName(frame));
}

ReadPicture SequenceInput::ReadInto(PictureReader& reader, std::int32_t frame, std::int32_t depth,
                                    HostImage& image) const {
  const auto path = FileOf(frame);
  auto read = use_ == Use::Mask ? reader.ReadMask(path, depth, image) : reader.ReadColour(path, depth, image);
  image.Place(record_);
  return read;
}

SequenceInput::Picture SequenceInput::Read(PictureReader& reader, std::int32_t frame, std::int32_t depth,
                                           HostImage& slot) {
  if (pattern_.hasNumber()) return {&slot, ReadInto(reader, frame, depth, slot).metadata};
  const std::lock_guard hold(keeping_);
  if (!keptFile_) keptFile_ = ReadInto(reader, frame, depth, kept_);
  return {&kept_, keptFile_->metadata};
}

}  // namespace vblur::host
