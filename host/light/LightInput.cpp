#include "host/light/LightInput.h"

#include <cstring>
#include <utility>

#include "host/base/Failure.h"
#include "host/files/PictureChannels.h"

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
  bool KnowsFacts() const override { return true; }

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

PictureInfo DescribeLight(const std::filesystem::path& path, const std::string& format, const LightPixels& pixels,
                          const ReadChoice& choice) {
  std::vector<std::string> names{"Y"};
  if (pixels.channels > 2) names = {"R", "G", "B"};
  const bool hasAlpha = pixels.channels % 2 == 0;
  if (hasAlpha) names.emplace_back("A");
  PictureInfo info;
  info.format = format;
  info.choice = ChooseChannels(path, names, hasAlpha ? pixels.channels - 1 : -1, choice);
  info.data = info.display = {0, 0, pixels.width, pixels.height};
  info.width = pixels.width;
  info.height = pixels.height;
  for (const std::string& name : names)
    info.all.push_back({name, pixels.type});
  DescribeChannels(info);
  return info;
}

OpenedLight LightModule::OpenWhole(const std::filesystem::path& path, const ReadChoice& choice) const {
  OpenedLight opened = OpenFile(path, choice);
  // It has a channel that the effect does not take: the full library keeps it.
  if (opened.file && choice.keepsPassing && !opened.info.passing.empty()) return {};
  return opened;
}

std::unique_ptr<PictureSource> LightModule::Open(const std::filesystem::path& path, const ReadChoice& choice) {
  OpenedLight opened = OpenWhole(path, choice);
  return opened.file ? std::make_unique<LightSource>(path, std::move(opened)) : nullptr;
}

std::optional<PictureReport> LightModule::Report(const std::filesystem::path& path, const ReadChoice& choice) {
  const OpenedLight opened = OpenWhole(path, choice);
  if (!opened.file) return std::nullopt;
  return DescribePicture(LightMetadata(opened.info, opened.file->Attributes(), opened.associatedAlpha));
}

}  // namespace vblur::host
