// One picture as the host hands it to the effect: a format, a size, tightly packed rows that start
// with the bottom row, and a place in the world. The host owns the memory and keeps it alive until
// the effect is given another picture or none.
#pragma once

#include "DsTypes.h"

namespace vblur {

struct DSWorldPair {
  double x = 0.0;
  double y = 0.0;
};

struct DSPixelPair {
  std::int32_t x = 0;
  std::int32_t y = 0;
};

// The lower left pixel, and how many there are.
struct DSPixelBox {
  DSPixelPair origin;
  DSPixelPair size;
};

class IDSImage {
 public:
  virtual ~IDSImage() = default;

  // 0 when the pixels may be used; any other result is the reason why not.
  virtual HRESULT IsUsable() const = 0;
  virtual GUID Format() const = 0;
  // Width and height in pixels.
  virtual DSPixelPair Size() const = 0;
  // The first pixel of row 0, the bottom of the picture. A row is width times the size of a pixel.
  virtual void* FirstPixel() const = 0;
  virtual DSWorldPair WorldPosition() const = 0;
  virtual DSWorldPair WorldSize() const = 0;
};

}  // namespace vblur
