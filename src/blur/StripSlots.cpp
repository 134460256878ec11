#include "blur/StripSlots.h"

#include <algorithm>
#include <new>

#include "image/Arithmetic.h"

namespace vblur {

StripSlots::StripSlots(const HvTexAxis& source, const BoxReach& read)
    : length_(read.last - read.first), slots_(new (std::nothrow) std::int32_t[static_cast<std::size_t>(length_)]) {
  if (slots_ == nullptr) return;
  std::int32_t low = kInt32Max;
  std::int32_t high = -1;
  for (std::int64_t i = 0; i < length_; ++i) {
    const auto y = static_cast<std::int32_t>(read.first + i);
    const std::int32_t row = source.mapIndex(wrapSub(y, source.originI));
    slots_[static_cast<std::size_t>(i)] = row;
    if (row == kOutside) {
      outsideRow_ = y;
      outsideSlot_ = 0;
    } else {
      low = std::min(low, row);
      high = std::max(high, row);
    }
  }
  const std::int32_t inside = high < 0 ? 0 : high - low + 1;
  count_ = inside + outsideSlot_ + 1;
  firstRow_ = static_cast<std::int32_t>(read.first);
  if (count_ >= length_) {
    giveEachPlaceASlot();
    return;
  }
  firstRow_ = wrapAdd(low, source.originI);
  if (outsideSlot_ == 0) outsideSlot_ = inside;
  for (std::int64_t i = 0; i < length_; ++i) {
    std::int32_t& slot = slots_[static_cast<std::size_t>(i)];
    slot = slot == kOutside ? outsideSlot_ : slot - low;
  }
}

// Where the rows between the lowest and the highest are more than the places: a window across the seam of a wrapped
// picture.
void StripSlots::giveEachPlaceASlot() {
  outsideSlot_ = -1;
  count_ = static_cast<std::int32_t>(length_);
  for (std::int32_t i = 0; i < count_; ++i)
    slots_[static_cast<std::size_t>(i)] = i;
}

}  // namespace vblur
