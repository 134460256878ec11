#include "host/files/ComponentRows.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace vblur::host {

CommonColumns ColumnsInCommon(const FileWindow& file, const FileWindow& source) {
  const std::int64_t left = std::max<std::int64_t>(file.x, source.x);
  const std::int64_t right = std::min<std::int64_t>(file.Right(), source.Right());
  if (right <= left) return {};
  return {static_cast<std::size_t>(left - file.x), static_cast<std::size_t>(left - source.x),
          static_cast<std::size_t>(right - left)};
}

ComponentRows::ComponentRows(const PictureToWrite& picture, const PictureInfo* source, const FileWindow& file,
                             const FileWindow& picturePlace, std::size_t pixelBytes)
    : picture_(picture), source_(source), file_(file), place_(picturePlace), pixelBytes_(pixelBytes) {}

bool ComponentRows::Covers(std::int32_t row) const {
  return place_.x <= file_.x && place_.Right() >= file_.Right() && HasRow(place_, std::int64_t{file_.y} + row);
}

ComponentRows::Span ComponentRows::PixelsOf(std::int32_t row) const {
  const std::int64_t y = std::int64_t{file_.y} + row;
  const CommonColumns columns = ColumnsInCommon(file_, place_);
  if (!HasRow(place_, y) || columns.count == 0) return {};
  const HostImage& image = picture_.image;
  const auto fromTop = static_cast<std::int32_t>(y - place_.y);
  if (picture_.rendered != nullptr) picture_.rendered->WaitFor(fromTop + 1);
  return {image.Row(image.Height() - 1 - fromTop) + columns.inSource * image.PixelBytes(), columns.inFile,
          columns.count};
}

// Its writer would make large values of those below 0.
bool ComponentRows::LosesNegative(SampleType type) const {
  return !picture_.format.hasNegative && type == SampleType::Float;
}

void ComponentRows::AddBeyond(const ComponentChannel& channel, std::int32_t row, BeyondRange& beyond) const {
  ValueRange held = RangeOf(channel.type);
  if (LosesNegative(channel.type)) held.low = 0.0f;
  const Span span = PixelsOf(row);
  AddBeyondType(span.pixels, picture_.image.Depth(), channel.component, held, span.count, beyond);
}

void ComponentRows::Put(const ComponentChannel& channel, std::int32_t row, std::byte* samples) const {
  const Span span = PixelsOf(row);
  WriteComponents(span.pixels, picture_.image.Depth(), channel.component, samples + span.inFile * pixelBytes_,
                  channel.type, pixelBytes_, span.count);
  if (picture_.part != nullptr) PutAround(channel, row, samples);
  if (!LosesNegative(channel.type)) return;
  for (std::size_t x = 0; x < span.count; ++x) {
    std::byte* const sample = samples + (span.inFile + x) * pixelBytes_;
    float value;
    std::memcpy(&value, sample, sizeof value);
    value = std::max(value, 0.0f);
    std::memcpy(sample, &value, sizeof value);
  }
}

void ComponentRows::PutAround(const ComponentChannel& channel, std::int32_t row, std::byte* samples) const {
  const TakenChannels taken = source_->Taken();
  const ChannelChoice& choice = taken.choice;
  const int from =
      std::array{choice.red, choice.green, choice.blue, choice.alpha}[static_cast<std::size_t>(channel.component)];
  // The data window in the coordinates of the file that is written.
  FileWindow data = source_->data;
  data.x += place_.x - source_->Picture().x;
  data.y += place_.y - source_->Picture().y;
  const std::int64_t y = std::int64_t{file_.y} + row;
  if (from < 0 || !HasRow(data, y)) return;
  const std::size_t sampleBytes = SampleBytes(source_->samples);
  const std::size_t pixelBytes = static_cast<std::size_t>(taken.count) * sampleBytes;
  const auto put = [&](std::int64_t left, std::int64_t right) {
    left = std::max({left, std::int64_t{data.x}, std::int64_t{file_.x}});
    right = std::min({right, data.Right(), file_.Right()});
    if (left >= right) return;
    const auto pixel = static_cast<std::size_t>((y - data.y) * data.width + left - data.x);
    PassSamples(picture_.part->source->data() + pixel * pixelBytes + static_cast<std::size_t>(from) * sampleBytes,
                source_->samples, pixelBytes, samples + static_cast<std::size_t>(left - file_.x) * pixelBytes_,
                channel.type, pixelBytes_, static_cast<std::size_t>(right - left));
  };
  const Region& region = picture_.part->region;
  const std::int64_t up = place_.Bottom() - 1 - y;
  const bool crosses = up >= region.y && up < std::int64_t{region.y} + region.height;
  const std::int64_t left = std::int64_t{place_.x} + region.x;
  put(place_.x, crosses ? left : place_.Right());
  if (crosses) put(left + region.width, place_.Right());
}

}  // namespace vblur::host
