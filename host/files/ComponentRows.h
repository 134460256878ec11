// The rows of an output file made of a picture's components, when they are needed.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host/files/PictureLibrary.h"

namespace vblur::host {

// The columns that a row of a file and a row of a source have in common.
struct CommonColumns {
  std::size_t inFile = 0;
  std::size_t inSource = 0;
  std::size_t count = 0;
};

CommonColumns ColumnsInCommon(const FileWindow& file, const FileWindow& source);

constexpr bool HasRow(const FileWindow& window, std::int64_t y) {
  return y >= window.y && y < window.y + std::int64_t{window.height};
}

// One component of the picture as a channel of the file.
struct ComponentChannel {
  int component = 0;
  SampleType type = SampleType::Unsigned8;
};

class ComponentRows {
 public:
  // `source` is that of the picture's metadata, null without. `file` is the part of the file that is written and
  // `picture` where the picture lies, both in the coordinates of the file. All but the windows are borrowed.
  ComponentRows(const PictureToWrite& picture, const PictureInfo* source, const FileWindow& file,
                const FileWindow& picturePlace, std::size_t pixelBytes);

  std::size_t RowBytes() const { return pixelBytes_ * static_cast<std::size_t>(file_.width); }
  // Whether the picture reaches all pixels of a row, 0 the top one.
  bool Covers(std::int32_t row) const;
  // Puts a channel of a row where the picture reaches; `samples` is its place in the row's first pixel.
  void Put(const ComponentChannel& channel, std::int32_t row, std::byte* samples) const;
  // Adds what the file does not hold of it.
  void AddBeyond(const ComponentChannel& channel, std::int32_t row, BeyondRange& beyond) const;

 private:
  // The picture's pixels in a row of the file.
  struct Span {
    const std::byte* pixels = nullptr;
    std::size_t inFile = 0;
    std::size_t count = 0;
  };
  Span PixelsOf(std::int32_t row) const;
  bool LosesNegative(SampleType type) const;
  // The samples of the source where the row was not rendered.
  void PutAround(const ComponentChannel& channel, std::int32_t row, std::byte* samples) const;

  const PictureToWrite& picture_;
  const PictureInfo* source_;
  FileWindow file_;
  FileWindow place_;
  std::size_t pixelBytes_;
};

}  // namespace vblur::host
