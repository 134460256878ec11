// The rows of an output file as the picture library takes them, made from the picture when they are needed.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host/pictures/OutputLayout.h"

namespace vblur::host {

class OutputRows {
 public:
  // All are borrowed.
  OutputRows(const PictureToWrite& picture, const OutputLayout& layout);

  std::size_t RowBytes() const { return pixelBytes_ * static_cast<std::size_t>(layout_.spec.width); }
  // Rows of the file's data window, the top one is 0.
  void Make(std::int32_t first, std::int32_t count, std::byte* rows) const;
  // Adds what the file does not hold of these rows of the picture.
  void AddBeyond(std::int32_t first, std::int32_t count, BeyondRange& beyond) const;

 private:
  // The picture's pixels in a row of the file.
  struct Span {
    const std::byte* pixels = nullptr;
    std::size_t inFile = 0;
    std::size_t count = 0;
  };
  Span PixelsOf(std::int32_t row) const;
  bool LosesNegative(const OutputChannel& channel) const;
  ValueRange HeldBy(const OutputChannel& channel) const;
  void MakeRow(std::int32_t row, std::byte* samples) const;
  void PutComponent(const OutputChannel& channel, std::int32_t row, std::byte* samples) const;
  // The samples of the source where the row was not rendered.
  void PutAround(const OutputChannel& channel, std::int32_t row, std::byte* samples) const;
  void PutPassing(const OutputChannel& channel, std::int32_t row, std::byte* samples) const;

  const PictureToWrite& picture_;
  const OutputLayout& layout_;
  const std::size_t pixelBytes_;
};

}  // namespace vblur::host
