#include "image/HvIPWindowStack.h"

namespace vblur {

std::int32_t HvIPWindowStack::push() {
  if (count_ == static_cast<std::int32_t>(entries_.size())) return 0;
  entries_[static_cast<std::size_t>(count_++)] = {processor_->x1, processor_->x2, processor_->y1, processor_->y2};
  return 1;
}

std::int32_t HvIPWindowStack::pushAndSet(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom) {
  if (push() == 0) return 0;
  processor_->x1 = left;
  processor_->y1 = top;
  processor_->x2 = right + 1;
  processor_->y2 = bottom + 1;
  return 1;
}

std::int32_t HvIPWindowStack::pop() {
  if (count_ == 0) return 0;
  const Entry& entry = entries_[static_cast<std::size_t>(--count_)];
  processor_->x1 = entry.x1;
  processor_->x2 = entry.x2;
  processor_->y1 = entry.y1;
  processor_->y2 = entry.y2;
  return 1;
}

}  // namespace vblur
