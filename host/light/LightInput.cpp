#include "host/light/LightInput.h"

#include <cstring>
#include <utility>

#include "host/base/Failure.h"

namespace vblur::host {

namespace {

class LightSource final : public PictureSource {
 public:
  LightSource(std::filesystem::path path, OpenedLight opened)
      : path_(std::move(path)), opened_(std::move(opened)), taken_(opened_.info.Taken()) {}

  const PictureInfo& Info() const override { return opened_.info; }
  std::int32_t RowsAtOnce() const override { return opened_.file->RowsAtOnce(); }
  void ReadRows(std::int32_t first, std::int32_t count, std::byte* samples) override;
  ReadPicture Facts() override {
    const bool isAssociated = opened_.associatedAlpha;
    return {opened_.info,
            std::make_shared<LightMetadata>(opened_.info, opened_.file->Attributes(), isAssociated),
            isAssociated,
            {}};
  }

 private:
  std::size_t Channels() const { return opened_.info.all.size(); }
  void Read(std::int32_t first, std::int32_t count, std::byte* samples) {
    if (!opened_.file->ReadRows(first, count, samples))
      RefuseToRead(path_, "the picture is damaged or cut short (" + opened_.file->Message() + ")");
  }

  std::filesystem::path path_;
  OpenedLight opened_;
  TakenChannels taken_;
  std::vector<std::byte> rows_;
};

void LightSource::ReadRows(std::int32_t first, std::int32_t count, std::byte* samples) {
  if (static_cast<std::size_t>(taken_.count) == Channels()) return Read(first, count, samples);
  const std::size_t sample = SampleBytes(opened_.info.samples);
  const std::size_t pixel = sample * Channels();
  const std::size_t taken = sample * static_cast<std::size_t>(taken_.count);
  const std::size_t pixels = static_cast<std::size_t>(opened_.info.data.width) * static_cast<std::size_t>(count);
  rows_.resize(pixel * pixels);
  Read(first, count, rows_.data());
  const std::byte* from = rows_.data() + sample * static_cast<std::size_t>(taken_.first);
  for (std::size_t at = 0; at < pixels; ++at, from += pixel, samples += taken)
    std::memcpy(samples, from, taken);
}

}  // namespace

std::unique_ptr<PictureSource> LightModule::Open(const std::filesystem::path& path, const ReadChoice& choice) {
  OpenedLight opened = OpenFile(path, choice);
  return opened.file ? std::make_unique<LightSource>(path, std::move(opened)) : nullptr;
}

std::optional<PictureReport> LightModule::Report(const std::filesystem::path& path, const ReadChoice& choice) {
  const OpenedLight opened = OpenFile(path, choice);
  if (!opened.file) return std::nullopt;
  return DescribePicture(LightMetadata(opened.info, opened.file->Attributes(), opened.associatedAlpha));
}

}  // namespace vblur::host
