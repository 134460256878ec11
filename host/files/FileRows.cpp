#include "host/files/FileRows.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace vblur::host {

FileRows::FileRows(const PictureInfo& info, std::int32_t components, std::int32_t depth, HostImage& image)
    : info_(info),
      taken_(info.Taken()),
      depth_(depth),
      image_(image),
      width_(static_cast<std::size_t>(info.data.width)) {
  const FileWindow all = info.Picture();
  image.Reset(depth, components, all.width, all.height);
  image.PutInFrame({all.x - info.display.x, static_cast<std::int32_t>(info.display.Bottom() - all.Bottom())},
                   {info.display.width, info.display.height});
  if (all != info.data) image.Clear();
  left_ = static_cast<std::size_t>(info.data.x - all.x) * image.PixelBytes();
  top_ = static_cast<std::int32_t>(all.Bottom() - 1 - info.data.y);
}

namespace {

class ColourRows final : public FileRows {
 public:
  ColourRows(const PictureInfo& info, std::int32_t depth, HostImage& image) : FileRows(info, 4, depth, image) {}

  void Put(const std::byte* samples) override;
  BeyondRange Lost() const override { return lost_; }

 private:
  BeyondRange lost_;
};

void ColourRows::Put(const std::byte* samples) {
  ReadColourRow(samples, info_.samples, taken_.count, taken_.choice, depth_, Target(row_), width_);
  AddBeyondRange(samples, info_.samples, taken_.count, taken_.choice, depth_, width_, lost_);
  ++row_;
}

// One channel, or alpha while nothing but alpha has varied. What has been put as alpha is corrected when that turns
// out wrong, so the file is read once.
class MaskRows final : public FileRows {
 public:
  MaskRows(const PictureInfo& info, std::int32_t depth, HostImage& image);

  void Put(const std::byte* samples) override;
  void Finish() override;
  BeyondRange Lost() const override { return takesAlpha_ ? lostOfAlpha_ : lostOfFirst_; }

 private:
  // Whether the row has the first pixel's value throughout.
  bool IsSame(const std::byte* samples, int channel) const;
  void PutChannel(const std::byte* samples, int channel);
  void AddLost(const std::byte* samples);
  // The rows so far get the first channel, which has had one value.
  void TakeFirstChannel();

  bool takesAlpha_;
  bool alphaVaries_ = false;
  BeyondRange lostOfAlpha_;
  BeyondRange lostOfFirst_;
  std::vector<int> colours_;
  std::vector<std::byte> firstPixel_;
};

MaskRows::MaskRows(const PictureInfo& info, std::int32_t depth, HostImage& image) : FileRows(info, 1, depth, image) {
  const ChannelChoice& channels = taken_.choice;
  takesAlpha_ = channels.alpha >= 0 && channels.alpha != channels.red;
  for (const int channel : {channels.red, channels.green, channels.blue}) {
    if (channel >= 0) colours_.push_back(channel);
  }
}

bool MaskRows::IsSame(const std::byte* samples, int channel) const {
  const std::size_t bytes = SampleBytes(info_.samples);
  const std::size_t at = static_cast<std::size_t>(channel) * bytes;
  for (std::size_t x = 0; x < width_; ++x) {
    if (std::memcmp(samples + x * PixelBytes() + at, firstPixel_.data() + at, bytes) != 0) return false;
  }
  return true;
}

void MaskRows::PutChannel(const std::byte* samples, int channel) {
  ReadMaskRow(samples, info_.samples, taken_.count, channel, depth_, Target(row_), width_);
}

// Fewer bits limit amounts without a word.
void MaskRows::AddLost(const std::byte* samples) {
  if (depth_ != 32) return;
  const ChannelChoice& channels = taken_.choice;
  const auto add = [&](int channel, BeyondRange& lost) {
    AddBeyondRange(samples, info_.samples, taken_.count, {channel, channel, channel, -1}, depth_, width_, lost);
  };
  if (takesAlpha_) add(channels.alpha, lostOfAlpha_);
  add(channels.red, lostOfFirst_);
}

void MaskRows::TakeFirstChannel() {
  takesAlpha_ = false;
  std::byte amount[sizeof(float)];
  ReadMaskRow(firstPixel_.data(), info_.samples, taken_.count, taken_.choice.red, depth_, amount, 1);
  const std::size_t bytes = image_.PixelBytes();
  for (std::int32_t row = 0; row < row_; ++row) {
    std::byte* to = Target(row);
    for (std::size_t x = 0; x < width_; ++x, to += bytes)
      std::memcpy(to, amount, bytes);
  }
}

void MaskRows::Put(const std::byte* samples) {
  if (takesAlpha_ && firstPixel_.empty()) firstPixel_.assign(samples, samples + PixelBytes());
  if (takesAlpha_ && !std::ranges::all_of(colours_, [&](int channel) { return IsSame(samples, channel); })) {
    TakeFirstChannel();
  }
  if (takesAlpha_ && !alphaVaries_) alphaVaries_ = !IsSame(samples, taken_.choice.alpha);
  PutChannel(samples, takesAlpha_ ? taken_.choice.alpha : taken_.choice.red);
  AddLost(samples);
  ++row_;
}

void MaskRows::Finish() {
  if (takesAlpha_ && !alphaVaries_) TakeFirstChannel();
}

}  // namespace

std::unique_ptr<FileRows> MakeFileRows(const PictureInfo& info, PictureUse use, std::int32_t depth, HostImage& image) {
  if (use == PictureUse::Mask) return std::make_unique<MaskRows>(info, depth, image);
  return std::make_unique<ColourRows>(info, depth, image);
}

}  // namespace vblur::host
