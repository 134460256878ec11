// A private base for processors that change their window from pass to pass: up to ten saved windows.
#pragma once

#include <array>
#include <cstdint>

#include "image/HvImgProc.h"

namespace vblur {

class HvIPWindowStack {
 public:
  explicit HvIPWindowStack(HvImgProc* processor) : processor_(processor) {}

  // Saves the window; 0 when ten are saved already.
  std::int32_t push();
  // Saves the window and sets another, x2 and y2 inclusive; 0, and nothing is changed, when ten are
  // saved already. The flag that a window is set is not touched.
  std::int32_t pushAndSet(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom);
  // Restores the window saved last; 0 when none is left.
  std::int32_t pop();

 private:
  struct Entry {
    std::int32_t x1, x2, y1, y2;
  };

  HvImgProc* processor_;
  std::array<Entry, 10> entries_{};
  std::int32_t count_ = 0;
};

}  // namespace vblur
