#include "host/light/PngReading.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "host/base/Failure.h"
#include "host/base/NameMatch.h"
#include "host/base/StandardStream.h"
#include "host/base/Utf8.h"
#include "host/files/PictureChannels.h"
#include "host/files/PictureSize.h"
#include "host/files/StandardInput.h"
#include "host/formats/PictureFileHeader.h"
#include "host/light/LightMetadata.h"
#include "host/light/PngInput.h"

namespace vblur::host {

namespace {

// The full library asks the reader of a name's format first, which may take the file for its own.
bool HasName(const std::filesystem::path& path) {
  const std::string extension = Utf8Of(path.extension());
  return extension.empty() || EqualIgnoringCase(extension, ".png");
}

std::vector<std::string> NamesOf(int channels) {
  if (channels <= 2) return channels == 1 ? std::vector<std::string>{"Y"} : std::vector<std::string>{"Y", "A"};
  std::vector<std::string> names{"R", "G", "B"};
  if (channels == 4) names.emplace_back("A");
  return names;
}

PictureInfo Describe(const std::filesystem::path& path, const PngInput& png, ChunkFacts chunks,
                     const ReadChoice& choice) {
  const std::vector<std::string> names = NamesOf(png.Channels());
  const bool hasAlpha = png.Channels() % 2 == 0;
  PictureInfo info;
  info.format = "png";
  info.choice = ChooseChannels(path, names, hasAlpha ? png.Channels() - 1 : -1, choice);
  info.data = info.display = {0, 0, png.Width(), png.Height()};
  info.width = png.Width();
  info.height = png.Height();
  for (const std::string& name : names)
    info.all.push_back({name, {NumberKind::Unsigned, png.Bits() / 8, png.Bits()}});
  DescribeChannels(info);
  if (png.IsLinear()) info.transfer = Transfer::Linear;
  info.pictures = std::max(1, chunks.frames);
  info.unread = std::move(chunks.unread);
  info.colourChunks = std::move(chunks.colourChunks);
  info.lateTexts = std::move(chunks.lateTexts);
  return info;
}

struct OpenedPng {
  std::unique_ptr<PngInput> file;  // null for a file that is not plain
  PictureInfo info;
};

OpenedPng OpenFile(const std::filesystem::path& path, const ReadChoice& choice) {
  const std::filesystem::path toOpen = FileToOpen(path);
  if (!HasName(path)) return {};
  auto file = PngInput::Open(toOpen);
  if (!file) return {};
  RequirePixels(path, file->Width(), file->Height(), file->Channels(), "", choice.mostPixels);
  ChunkFacts chunks = FactsOfChunks(toOpen);
  // It is damaged, which is told.
  if (chunks.hasProfile && file->Metadata().profile.empty()) return {};
  PictureInfo info = Describe(path, *file, std::move(chunks), choice);
  // It has a channel that the effect does not take: the full library keeps it.
  if (choice.keepsPassing && !info.passing.empty()) return {};
  return {std::move(file), std::move(info)};
}

class PngSource final : public PictureSource {
 public:
  PngSource(std::filesystem::path path, OpenedPng opened)
      : path_(std::move(path)), png_(std::move(opened.file)), info_(std::move(opened.info)), taken_(info_.Taken()) {}

  const PictureInfo& Info() const override { return info_; }
  std::int32_t RowsAtOnce() const override {
    constexpr std::size_t kBytes = std::size_t{4} << 20;
    return static_cast<std::int32_t>(
        std::clamp<std::size_t>(kBytes / png_->RowBytes(), 1, static_cast<std::size_t>(info_.height)));
  }
  void ReadRows(std::int32_t first, std::int32_t count, std::byte* samples) override;
  ReadPicture Facts() override { return {info_, std::make_shared<LightMetadata>(info_, png_->Metadata()), false, {}}; }

 private:
  void Read(std::int32_t count, std::byte* samples) {
    if (!png_->ReadRows(count, samples))
      RefuseToRead(path_, "the picture is damaged or cut short (" + png_->Message() + ")");
  }

  std::filesystem::path path_;
  std::unique_ptr<PngInput> png_;
  PictureInfo info_;
  TakenChannels taken_;
  std::vector<std::byte> row_;
};

void PngSource::ReadRows(std::int32_t /*first*/, std::int32_t count, std::byte* samples) {
  if (taken_.count == png_->Channels()) return Read(count, samples);
  const std::size_t sample = SampleBytes(info_.samples);
  const std::size_t pixel = sample * static_cast<std::size_t>(png_->Channels());
  const std::size_t taken = sample * static_cast<std::size_t>(taken_.count);
  row_.resize(png_->RowBytes());
  for (std::int32_t row = 0; row < count; ++row) {
    Read(1, row_.data());
    const std::byte* from = row_.data() + sample * static_cast<std::size_t>(taken_.first);
    for (std::int32_t x = 0; x < info_.width; ++x, from += pixel, samples += taken)
      std::memcpy(samples, from, taken);
  }
}

}  // namespace

std::unique_ptr<PictureSource> OpenPng(const std::filesystem::path& path, const ReadChoice& choice) {
  OpenedPng opened = OpenFile(path, choice);
  return opened.file ? std::make_unique<PngSource>(path, std::move(opened)) : nullptr;
}

std::optional<PictureReport> ReportPng(const std::filesystem::path& path, const ReadChoice& choice) {
  const OpenedPng opened = OpenFile(path, choice);
  if (!opened.file) return std::nullopt;
  return DescribePicture(LightMetadata(opened.info, opened.file->Metadata()));
}

}  // namespace vblur::host
