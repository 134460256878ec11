// A picture of the stand-alone host: owned memory in one of the effect's formats, and its place in
// the world.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

#include "host/hosted/HostOrigin.h"
#include "host/jobs/Job.h"
#include "platform/IDSImage.h"

namespace vblur::host {

// Rows of a picture, `end` excluded; 0 is the bottom one.
struct HostRows {
  std::int32_t begin = 0;
  std::int32_t end = 0;

  std::int32_t Count() const { return end - begin; }
};

class HostImage final : public IDSImage, public IHostOrigin {
 public:
  // The most components of one picture: width times height times components.
  static constexpr std::int64_t kMostComponents = std::int64_t{1} << 31;

  HostImage() = default;
  HostImage(const HostImage&) = delete;
  HostImage& operator=(const HostImage&) = delete;

  // A picture of width by height pixels with 1 (a mask) or 4 components of 8, 16 or 32 bits (floats). The memory of
  // an earlier picture is used again when it is large enough; its contents are then not defined.
  // Throws std::bad_alloc.
  void Reset(std::int32_t depth, std::int32_t components, std::int32_t width, std::int32_t height);
  // Sets every component to zero.
  void Clear();
  // Makes the picture a part of a frame, or more than it: its lower left corner lies at `corner` from that of the
  // frame. Reset makes it the whole frame.
  void PutInFrame(DSPixelPair corner, DSPixelPair frame);
  // Places the frame by a record, and the picture in it: the frame's position (default: its pixel origin), its size
  // (default: that in pixels) and its pixel origin.
  void Place(const ImageRecord& record);

  std::int32_t Width() const { return width_; }
  std::int32_t Height() const { return height_; }
  HostRows AllRows() const { return {0, height_}; }
  std::int32_t Depth() const { return depth_; }
  std::int32_t Components() const { return components_; }
  DSPixelPair FrameCorner() const { return corner_; }
  DSPixelPair FrameSize() const { return frame_; }
  std::size_t PixelBytes() const {
    return static_cast<std::size_t>(components_) * static_cast<std::size_t>(depth_ / 8);
  }
  std::size_t RowBytes() const { return static_cast<std::size_t>(width_) * PixelBytes(); }
  std::size_t ByteCount() const { return RowBytes() * static_cast<std::size_t>(height_); }
  // The first byte of a row; row 0 is the bottom of the picture.
  std::byte* Row(std::int32_t y) { return memory_.get() + RowBytes() * static_cast<std::size_t>(y); }
  const std::byte* Row(std::int32_t y) const { return memory_.get() + RowBytes() * static_cast<std::size_t>(y); }

  HRESULT IsUsable() const override { return memory_ ? kOk : kFailed; }
  GUID Format() const override;
  DSPixelPair Size() const override { return {width_, height_}; }
  void* FirstPixel() const override { return memory_.get(); }
  DSWorldPair WorldPosition() const override { return position_; }
  DSWorldPair WorldSize() const override { return size_; }
  DSPixelPair HostOrigin() const override { return origin_; }

 private:
  // Aligned to a cache line: rows that begin with one are the fastest to render.
  struct Aligned {
    static constexpr std::align_val_t kTo{64};
    void operator()(std::byte* memory) const { ::operator delete(memory, kTo); }
  };

  std::unique_ptr<std::byte, Aligned> memory_;
  std::size_t capacity_ = 0;
  std::int32_t depth_ = 8;
  std::int32_t components_ = 4;
  std::int32_t width_ = 0;
  std::int32_t height_ = 0;
  DSPixelPair corner_;
  DSPixelPair frame_;
  DSWorldPair position_;
  DSWorldPair size_;
  DSPixelPair origin_;
};

}  // namespace vblur::host
