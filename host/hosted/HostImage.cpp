#include "host/hosted/HostImage.h"

#include <array>
#include <cstring>

#include "platform/OwnFormats.h"

namespace vblur::host {

void HostImage::Reset(std::int32_t depth, std::int32_t components, std::int32_t width, std::int32_t height) {
  const auto bytes = static_cast<std::size_t>(depth / 8) * static_cast<std::size_t>(components) *
                     static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  if (!memory_ || bytes > capacity_) {
    memory_.reset();
    capacity_ = 0;
    memory_.reset(static_cast<std::byte*>(::operator new(bytes, Aligned::kTo)));
    capacity_ = bytes;
  }
  depth_ = depth;
  components_ = components;
  width_ = width;
  height_ = height;
  PutInFrame({0, 0}, {width, height});
}

void HostImage::Clear() {
  if (memory_) std::memset(memory_.get(), 0, ByteCount());
}

void HostImage::PutInFrame(DSPixelPair corner, DSPixelPair frame) {
  corner_ = corner;
  frame_ = frame;
  Place(ImageRecord{});
}

void HostImage::Place(const ImageRecord& record) {
  const auto place = [](std::int32_t corner, std::int32_t frame, std::int32_t pixels, double at, double size,
                        double& position, double& extent) {
    position = corner == 0 ? at : at + corner * (size / frame);
    extent = pixels == frame ? size : pixels * (size / frame);
  };
  const std::array<double, 2> origin{static_cast<double>(record.origin[0]), static_cast<double>(record.origin[1])};
  const std::array<double, 2> pixels{static_cast<double>(frame_.x), static_cast<double>(frame_.y)};
  const auto position = record.position.value_or(origin);
  const auto size = record.size.value_or(pixels);
  place(corner_.x, frame_.x, width_, position[0], size[0], position_.x, size_.x);
  place(corner_.y, frame_.y, height_, position[1], size[1], position_.y, size_.y);
  origin_ = {static_cast<std::int32_t>(std::int64_t{record.origin[0]} + corner_.x),
             static_cast<std::int32_t>(std::int64_t{record.origin[1]} + corner_.y)};
}

GUID HostImage::Format() const {
  if (components_ == 1) return depth_ == 8 ? MFIF_MASK_8 : depth_ == 16 ? MFIF_MASK_16 : kFormatMaskFloat;
  return depth_ == 8 ? MFIF_RGBA_RAW_32 : depth_ == 16 ? MFIF_RGBA_S2_14 : kFormatRgbaFloat;
}

}  // namespace vblur::host
