// The part of the picture that a stage works on.
#pragma once

#include <cstdint>

namespace vblur {

// Pixels in image coordinates, all four ends inclusive. For a half-height field, y counts rows of the field.
struct StageWindow {
  std::int32_t x1 = 0;
  std::int32_t y1 = 0;
  std::int32_t x2 = 0;
  std::int32_t y2 = 0;

  template <class Processor>
  void giveTo(Processor& processor) const {
    processor.setWindow(x1, y1, x2, y2);
  }
};

}  // namespace vblur
