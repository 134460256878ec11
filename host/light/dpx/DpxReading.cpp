#include "host/light/dpx/DpxReading.h"

#include <algorithm>
#include <fstream>
#include <utility>

#include "host/files/PictureSize.h"
#include "host/files/StandardInput.h"
#include "host/light/dpx/PlainDpx.h"

namespace vblur::host {

namespace {

class DpxInput final : public LightInput {
 public:
  DpxInput(const std::filesystem::path& file, PlainDpx dpx) : dpx_(std::move(dpx)), stream_(file, std::ios::binary) {
    stream_.seekg(dpx_.begin);
  }

  const LightAttributes& Attributes() const override { return dpx_.attributes; }

  std::int32_t RowsAtOnce() const override {
    constexpr std::size_t kBytes = std::size_t{4} << 20;
    return static_cast<std::int32_t>(
        std::clamp<std::size_t>(kBytes / dpx_.RowBytes(), 1, static_cast<std::size_t>(dpx_.height)));
  }

  bool ReadRows(std::int32_t /*first*/, std::int32_t count, std::byte* samples) override {
    const std::size_t bytes = dpx_.RowBytes();
    packed_.resize(bytes * static_cast<std::size_t>(count));
    stream_.read(reinterpret_cast<char*>(packed_.data()), static_cast<std::streamsize>(packed_.size()));
    if (!stream_) return false;
    const std::size_t sampleBytes = dpx_.packing.bits == 8 ? 1 : 2;
    for (std::size_t row = 0; row < static_cast<std::size_t>(count); ++row)
      dpx_.packing.Unpack(packed_.data() + row * bytes, samples + row * dpx_.Samples() * sampleBytes, dpx_.Samples());
    return true;
  }

  const std::string& Message() const override { return message_; }

 private:
  PlainDpx dpx_;
  std::ifstream stream_;
  std::vector<std::byte> packed_;
  std::string message_ = "its rows";
};

PictureInfo Describe(const std::filesystem::path& path, const PlainDpx& dpx, const ReadChoice& choice) {
  const StoredType type{NumberKind::Unsigned, dpx.packing.bits == 8 ? 1 : 2, dpx.packing.bits};
  PictureInfo info = DescribeLight(path, "dpx", {dpx.width, dpx.height, dpx.channels, type}, choice);
  const std::string space = dpx.attributes.Text("oiio:ColorSpace");
  if (space == "Linear") info.transfer = Transfer::Linear;
  if (space == "KodakLog" || dpx.attributes.Text("dpx:Transfer") == "Printing density") info.transfer = Transfer::Other;
  info.dpxHeader = dpx.header;
  return info;
}

}  // namespace

OpenedLight OpenDpx(const std::filesystem::path& path, const ReadChoice& choice) {
  const std::filesystem::path file = FileToOpen(path);
  auto dpx = PlainDpxOf(file);
  if (!dpx) return {};
  RequirePixels(path, dpx->width, dpx->height, dpx->channels, "", choice.mostPixels);
  PictureInfo info = Describe(path, *dpx, choice);
  return {std::make_unique<DpxInput>(file, *std::move(dpx)), std::move(info), false};
}

}  // namespace vblur::host
