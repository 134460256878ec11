// The rows of an output file as the picture library takes them, made from the picture when they are needed.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host/files/ComponentRows.h"
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
  void MakeRow(std::int32_t row, std::byte* samples) const;
  void PutPassing(const OutputChannel& channel, std::int32_t row, std::byte* samples) const;

  const PictureToWrite& picture_;
  const OutputLayout& layout_;
  const std::size_t pixelBytes_;
  ComponentRows components_;
};

}  // namespace vblur::host
