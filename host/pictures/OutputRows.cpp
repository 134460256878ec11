#include "host/pictures/OutputRows.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

namespace vblur::host {

namespace {

// The columns that the file's row and a row of a source have in common.
struct CommonColumns {
  std::size_t inFile = 0;
  std::size_t inSource = 0;
  std::size_t count = 0;
};

CommonColumns Common(const OIIO::ImageSpec& file, const FileWindow& source) {
  const std::int64_t left = std::max<std::int64_t>(file.x, source.x);
  const std::int64_t right = std::min<std::int64_t>(std::int64_t{file.x} + file.width, source.Right());
  if (right <= left) return {};
  return {static_cast<std::size_t>(left - file.x), static_cast<std::size_t>(left - source.x),
          static_cast<std::size_t>(right - left)};
}

bool HasRow(const FileWindow& window, std::int64_t y) {
  return y >= window.y && y < window.Bottom();
}

}  // namespace

OutputRows::OutputRows(const PictureToWrite& picture, const OutputLayout& layout)
    : picture_(picture), layout_(layout), pixelBytes_(layout.PixelBytes()) {}

void OutputRows::Make(std::int32_t first, std::int32_t count, std::byte* rows) const {
  for (std::int32_t row = 0; row < count; ++row)
    MakeRow(first + row, rows + RowBytes() * static_cast<std::size_t>(row));
}

void OutputRows::MakeRow(std::int32_t row, std::byte* samples) const {
  // Where no source reaches, everything is zero.
  const FileWindow& picture = layout_.picture;
  const bool isCovered = picture.x <= layout_.spec.x && picture.Right() >= layout_.spec.x + layout_.spec.width &&
                         HasRow(picture, layout_.spec.y + row);
  if (!isCovered) std::memset(samples, 0, RowBytes());
  for (const OutputChannel& channel : layout_.channels) {
    if (channel.component >= 0) {
      PutComponent(channel, row, samples);
    } else {
      PutPassing(channel, row, samples);
    }
    samples += channel.LibraryType().size();
  }
}

OutputRows::Span OutputRows::PixelsOf(std::int32_t row) const {
  const FileWindow& window = layout_.picture;
  const std::int64_t y = std::int64_t{layout_.spec.y} + row;
  const CommonColumns columns = Common(layout_.spec, window);
  if (!HasRow(window, y) || columns.count == 0) return {};
  const HostImage& image = picture_.image;
  const auto fromTop = static_cast<std::int32_t>(y - window.y);
  return {image.Row(image.Height() - 1 - fromTop) + columns.inSource * image.PixelBytes(), columns.inFile,
          columns.count};
}

// Its writer would make large values of those below 0.
bool OutputRows::LosesNegative(const OutputChannel& channel) const {
  return !picture_.format.hasNegative && channel.type == SampleType::Float;
}

ValueRange OutputRows::HeldBy(const OutputChannel& channel) const {
  ValueRange held = RangeOf(channel.type);
  if (LosesNegative(channel)) held.low = 0.0f;
  return held;
}

void OutputRows::AddBeyond(std::int32_t first, std::int32_t count, BeyondRange& beyond) const {
  for (std::int32_t row = first; row < first + count; ++row) {
    const Span span = PixelsOf(row);
    for (const OutputChannel& channel : layout_.channels) {
      if (channel.component < 0) continue;
      AddBeyondType(span.pixels, picture_.image.Depth(), channel.component, HeldBy(channel), span.count, beyond);
    }
  }
}

void OutputRows::PutComponent(const OutputChannel& channel, std::int32_t row, std::byte* samples) const {
  const Span span = PixelsOf(row);
  WriteComponents(span.pixels, picture_.image.Depth(), channel.component, samples + span.inFile * pixelBytes_,
                  channel.type, pixelBytes_, span.count);
  if (picture_.part != nullptr) PutAround(channel, row, samples);
  if (!LosesNegative(channel)) return;
  for (std::size_t x = 0; x < span.count; ++x) {
    std::byte* const sample = samples + (span.inFile + x) * pixelBytes_;
    float value;
    std::memcpy(&value, sample, sizeof value);
    value = std::max(value, 0.0f);
    std::memcpy(sample, &value, sizeof value);
  }
}

void OutputRows::PutAround(const OutputChannel& channel, std::int32_t row, std::byte* samples) const {
  const PictureInfo& source = picture_.metadata->info;
  const TakenChannels taken = source.Taken();
  const ChannelChoice& choice = taken.choice;
  const int from =
      std::array{choice.red, choice.green, choice.blue, choice.alpha}[static_cast<std::size_t>(channel.component)];
  // The data window in the coordinates of the file that is written.
  FileWindow data = source.data;
  data.x += layout_.picture.x - source.Picture().x;
  data.y += layout_.picture.y - source.Picture().y;
  const std::int64_t y = std::int64_t{layout_.spec.y} + row;
  if (from < 0 || !HasRow(data, y)) return;
  const std::size_t sampleBytes = SampleBytes(source.samples);
  const std::size_t pixelBytes = static_cast<std::size_t>(taken.count) * sampleBytes;
  const auto put = [&](std::int64_t left, std::int64_t right) {
    left = std::max({left, std::int64_t{data.x}, std::int64_t{layout_.spec.x}});
    right = std::min({right, data.Right(), std::int64_t{layout_.spec.x} + layout_.spec.width});
    if (left >= right) return;
    const auto pixel = static_cast<std::size_t>((y - data.y) * data.width + left - data.x);
    PassSamples(picture_.part->source->data() + pixel * pixelBytes + static_cast<std::size_t>(from) * sampleBytes,
                source.samples, pixelBytes, samples + static_cast<std::size_t>(left - layout_.spec.x) * pixelBytes_,
                channel.type, pixelBytes_, static_cast<std::size_t>(right - left));
  };
  const Region& region = picture_.part->region;
  const FileWindow& picture = layout_.picture;
  const std::int64_t up = picture.Bottom() - 1 - y;
  const bool crosses = up >= region.y && up < std::int64_t{region.y} + region.height;
  const std::int64_t left = std::int64_t{picture.x} + region.x;
  put(picture.x, crosses ? left : picture.Right());
  if (crosses) put(left + region.width, picture.Right());
}

void OutputRows::PutPassing(const OutputChannel& channel, std::int32_t row, std::byte* samples) const {
  const PictureMetadata& source = *picture_.metadata;
  const FileWindow& window = source.info.data;
  const std::int64_t y = std::int64_t{layout_.spec.y} + row;
  const CommonColumns columns = Common(layout_.spec, window);
  const std::size_t size = channel.passedAs.size();
  for (std::size_t x = 0; x < static_cast<std::size_t>(layout_.spec.width); ++x)
    std::memset(samples + x * pixelBytes_, 0, size);
  if (!HasRow(window, y)) return;
  const std::size_t sourceBytes = source.info.PassingBytes();
  const auto fromTop = static_cast<std::size_t>(y - window.y);
  const std::byte* from = source.passing.data() + channel.place +
                          (fromTop * static_cast<std::size_t>(window.width) + columns.inSource) * sourceBytes;
  std::byte* to = samples + columns.inFile * pixelBytes_;
  for (std::size_t x = 0; x < columns.count; ++x, from += sourceBytes, to += pixelBytes_) {
    if (channel.passedAs == channel.passedFrom) {
      std::memcpy(to, from, size);
    } else {
      OIIO::convert_pixel_values(channel.passedFrom, from, channel.passedAs, to);
    }
  }
}

}  // namespace vblur::host
