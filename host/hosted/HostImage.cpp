#include "host/hosted/HostImage.h"

#include <cstring>

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
  Place(ImageRecord{});
}

void HostImage::Clear() {
  if (memory_) std::memset(memory_.get(), 0, ByteCount());
}

void HostImage::Place(const ImageRecord& record) {
  origin_ = {record.origin[0], record.origin[1]};
  position_ = {static_cast<double>(origin_.x), static_cast<double>(origin_.y)};
  size_ = {static_cast<double>(width_), static_cast<double>(height_)};
  if (record.position) position_ = {(*record.position)[0], (*record.position)[1]};
  if (record.size) size_ = {(*record.size)[0], (*record.size)[1]};
}

GUID HostImage::Format() const {
  if (components_ == 1) return depth_ == 8 ? MFIF_MASK_8 : MFIF_MASK_16;
  return depth_ == 8 ? MFIF_RGBA_RAW_32 : MFIF_RGBA_S2_14;
}

}  // namespace vblur::host
