#include "host/files/OutputWindows.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "host/files/OutputPixels.h"

namespace vblur::host {

namespace {

bool IsZero(const std::byte* from, std::size_t bytes) {
  return std::all_of(from, from + bytes, [](std::byte each) { return each == std::byte{0}; });
}

// Columns of the picture that are not all zero in this row: the first and the first beyond them.
std::pair<std::int32_t, std::int32_t> UsedColumns(const std::byte* row, std::int32_t width, std::size_t pixelBytes) {
  const auto isZero = [&](std::int32_t x) {
    return IsZero(row + static_cast<std::size_t>(x) * pixelBytes, pixelBytes);
  };
  std::int32_t left = 0;
  std::int32_t right = width;
  while (left < right && isZero(left))
    ++left;
  while (right > left && isZero(right - 1))
    --right;
  return {left, right};
}

// The smallest window that holds `data` and every pixel that is not all zero.
FileWindow GrownData(const PictureToWrite& written, const FileWindow& picture, FileWindow data) {
  if (Union(data, picture) == data) return data;
  written.WaitForAll();
  const HostImage& image = written.image;
  const auto pixelBytes = static_cast<std::size_t>(image.Depth() / 8 * image.Components());
  for (std::int32_t y = 0; y < image.Height(); ++y) {
    const auto [left, right] = UsedColumns(image.Row(image.Height() - 1 - y), image.Width(), pixelBytes);
    if (left == right) continue;
    data = Union(data, {picture.x + left, picture.y + y, right - left, 1});
  }
  return data;
}

// Formats without windows write the display window alone, from their origin on.
OutputWindows WithoutWindows(const OutputWindows& windows) {
  const FileWindow& written = windows.display;
  OutputWindows moved = windows;
  moved.picture.x -= written.x;
  moved.picture.y -= written.y;
  moved.display = {0, 0, written.width, written.height};
  moved.data = moved.display;
  return moved;
}

}  // namespace

OutputWindows ChooseOutputWindows(const PictureToWrite& picture, const PictureInfo* source) {
  const HostImage& image = picture.image;
  const FileWindow whole{0, 0, image.Width(), image.Height()};
  const auto place = source != nullptr ? PlaceInFile(*source, image.Width(), image.Height()) : std::nullopt;
  if (!place) return {whole, whole, whole};
  const bool hasWindows = picture.format.hasWindows;
  const OutputWindows windows{*place, hasWindows ? GrownData(picture, *place, source->data) : source->display,
                              source->display};
  return hasWindows ? windows : WithoutWindows(windows);
}

}  // namespace vblur::host
