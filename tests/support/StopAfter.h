// An interrupt record that stops after a number of polls, and counts them.
#pragma once

#include <atomic>
#include <cstdint>

#include "image/HvInteruptable.h"

namespace vblur::test {

class StopAfter {
 public:
  static constexpr std::int32_t kNever = -1;
  static constexpr std::int32_t kReason = 10000;

  explicit StopAfter(std::int32_t polls) : left_(polls) {
    record.arm(this, [](void* context, HvStateWord* state) -> std::int32_t {
      auto* self = static_cast<StopAfter*>(context);
      ++self->asked_;
      if (self->left_ == kNever || self->left_.fetch_sub(1) > 0) return 0;
      *state = kReason;
      return 1;
    });
  }

  std::int32_t asked() const { return asked_; }

  HvInterruptRecord record;

 private:
  std::atomic<std::int32_t> left_;
  std::atomic<std::int32_t> asked_{0};
};

}  // namespace vblur::test
