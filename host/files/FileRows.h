// Turns the rows of a file into those of a picture.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "host/files/PictureInfo.h"
#include "host/hosted/HostImage.h"

namespace vblur::host {

// Puts the rows of a file's data window where they lie in the picture that the effect gets.
class FileRows {
 public:
  virtual ~FileRows() = default;
  FileRows(const FileRows&) = delete;
  FileRows& operator=(const FileRows&) = delete;

  // The channels of PictureInfo::Taken.
  std::size_t RowBytes() const { return width_ * PixelBytes(); }
  // The next row, the top one first.
  virtual void Put(const std::byte* samples) = 0;
  // After the last row.
  virtual void Finish() {}
  // Values that the depth does not hold.
  virtual BeyondRange Lost() const { return {}; }

 protected:
  FileRows(const PictureInfo& info, std::int32_t components, std::int32_t depth, HostImage& image);

  std::size_t PixelBytes() const { return static_cast<std::size_t>(taken_.count) * SampleBytes(info_.samples); }
  // Where a row of the data window begins, 0 its top one.
  std::byte* Target(std::int32_t row) { return image_.Row(top_ - row) + left_; }

  const PictureInfo& info_;
  const TakenChannels taken_;
  const std::int32_t depth_;
  HostImage& image_;
  std::size_t width_;
  std::int32_t row_ = 0;  // the next one

 private:
  std::size_t left_;
  std::int32_t top_;
};

// Sizes the picture (4 components for colours, 1 for a mask), transparent black where no data covers it. Borrows the
// picture and what is known of the file. A mask gets the channel that stands in place of red, or alpha where nothing
// but alpha varies. Throws std::bad_alloc.
std::unique_ptr<FileRows> MakeFileRows(const PictureInfo& info, PictureUse use, std::int32_t depth, HostImage& image);

}  // namespace vblur::host
