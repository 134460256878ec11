// What the two families of processors share: a window and passes.
#pragma once

#include <cstdint>

#include "image/Arithmetic.h"
#include "image/HvInteruptable.h"
#include "image/HvTexIndexer.h"

namespace vblur {

// The share of one thread: columns x1 to x2 - 1 of rows firstRow, firstRow + rowStep, ... below lastRow.
struct HvRowLoop {
  std::int32_t x1 = 0;
  std::int32_t x2 = 0;
  std::int32_t firstRow = 0;
  std::int32_t lastRow = 0;
  std::int32_t rowStep = 1;
};

class HvRowProcessor : public HvInteruptable {
 public:
  // right and bottom inclusive. Part of the framework, like setPasses: the processors here read the fields.
  void getWindow(std::int32_t& left, std::int32_t& top, std::int32_t& right, std::int32_t& bottom) const {
    left = x1;
    top = y1;
    right = wrapSub(x2, 1);
    bottom = wrapSub(y2, 1);
  }
  void setPasses(std::int32_t n) { passes = n; }

  // The fields that both families begin with, in this order; each family has its bits of flags.
  std::uint32_t flags = 0;
  // The window: x1 and y1 inclusive, x2 and y2 exclusive.
  std::int32_t x1 = 0;
  std::int32_t y1 = 0;
  std::int32_t x2 = 0;
  std::int32_t y2 = 0;
  std::int32_t passes = 1;
  std::int32_t pass = 0;

 protected:
  // Clips the window to a target; a window beside it becomes the nearest column or row.
  void cutWindow(const HvTexIndexer& target) {
    const std::int32_t mx = target.horizontal.writeOrigin;
    const std::int32_t my = target.vertical.writeOrigin;
    const std::int32_t lastX = mx + target.width() - 1;
    const std::int32_t lastY = my + target.height() - 1;
    x1 = clampTo(x1, mx, lastX);
    x2 = clampTo(wrapSub(x2, 1), mx, lastX) + 1;
    y1 = clampTo(y1, my, lastY);
    y2 = clampTo(wrapSub(y2, 1), my, lastY) + 1;
  }
  void takeWindow(const HvRowProcessor& other) {
    x1 = other.x1;
    y1 = other.y1;
    x2 = other.x2;
    y2 = other.y2;
  }
  // right and bottom inclusive.
  void storeWindow(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom) {
    x1 = left;
    y1 = top;
    x2 = wrapAdd(right, 1);
    y2 = wrapAdd(bottom, 1);
  }
};

}  // namespace vblur
