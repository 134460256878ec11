#include "host/pictures/OutputRows.h"

#include <cstring>

namespace vblur::host {

namespace {

FileWindow Written(const OutputLayout& layout) {
  return {layout.spec.x, layout.spec.y, layout.spec.width, layout.spec.height};
}

}  // namespace

OutputRows::OutputRows(const PictureToWrite& picture, const OutputLayout& layout)
    : picture_(picture),
      layout_(layout),
      pixelBytes_(layout.PixelBytes()),
      components_(picture, picture.metadata != nullptr ? &picture.metadata->info : nullptr, Written(layout),
                  layout.picture, pixelBytes_) {}

void OutputRows::Make(std::int32_t first, std::int32_t count, std::byte* rows) const {
  for (std::int32_t row = 0; row < count; ++row)
    MakeRow(first + row, rows + RowBytes() * static_cast<std::size_t>(row));
}

void OutputRows::MakeRow(std::int32_t row, std::byte* samples) const {
  // Where no source reaches, everything is zero.
  if (!components_.Covers(row)) std::memset(samples, 0, RowBytes());
  for (const OutputChannel& channel : layout_.channels) {
    if (channel.component >= 0) {
      components_.Put({channel.component, channel.type}, row, samples);
    } else {
      PutPassing(channel, row, samples);
    }
    samples += channel.LibraryType().size();
  }
}

void OutputRows::AddBeyond(std::int32_t first, std::int32_t count, BeyondRange& beyond) const {
  for (std::int32_t row = first; row < first + count; ++row) {
    for (const OutputChannel& channel : layout_.channels) {
      if (channel.component >= 0) components_.AddBeyond({channel.component, channel.type}, row, beyond);
    }
  }
}

void OutputRows::PutPassing(const OutputChannel& channel, std::int32_t row, std::byte* samples) const {
  const LibraryMetadata& source = *OwnMetadata(picture_.metadata);
  const FileWindow& window = source.info.data;
  const std::int64_t y = std::int64_t{layout_.spec.y} + row;
  const CommonColumns columns = ColumnsInCommon(Written(layout_), window);
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
