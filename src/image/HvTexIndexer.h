// The two axes of a texture: box, edge methods and origin.
#pragma once

#include <cstdint>

#include "image/HvTexAxis.h"

namespace vblur {

class HvTexIndexer {
 public:
  HvTexIndexer() = default;
  HvTexIndexer(const HvTexIndexer&) = default;
  HvTexIndexer& operator=(const HvTexIndexer&) = default;
  virtual ~HvTexIndexer() = default;

  // The box of both axes; ends inclusive, in either order, clamped to the buffer.
  virtual void setBounds(std::int32_t x1, std::int32_t x2, std::int32_t y1, std::int32_t y2) {
    horizontal.setBounds(x1, x2);
    vertical.setBounds(y1, y2);
  }
  virtual void setEdgeMethods(std::int32_t xMethod, std::int32_t yMethod) {
    horizontal.setEdgeMethod(xMethod);
    vertical.setEdgeMethod(yMethod);
  }
  virtual void setOrigin(std::int32_t x, std::int32_t y) {
    horizontal.setOrigin(x);
    vertical.setOrigin(y);
  }
  // Integer reads take the nearest whole pixel of a sub-pixel origin, half upward.
  virtual void setOrigin(float x, float y) {
    horizontal.setOrigin(x);
    vertical.setOrigin(y);
  }

  void setWriteOrigin(std::int32_t x, std::int32_t y) {
    horizontal.writeOrigin = x;
    vertical.writeOrigin = y;
  }
  void wholeBounds() { setBounds(0, horizontal.size, 0, vertical.size); }

  std::int32_t width() const { return horizontal.size; }
  std::int32_t height() const { return vertical.size; }

  HvTexAxis horizontal;
  HvTexAxis vertical;
};

}  // namespace vblur
