// A picture of the host: format, size, rows of memory, and a place in the world. The host owns the memory and keeps it
// until the effect is given another picture or none.
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

// Lower left pixel and extent.
struct DSPixelBox {
  DSPixelPair origin;
  DSPixelPair size;
};

class IDSImage {
 public:
  virtual ~IDSImage() = default;

  // 0 when usable, else the reason.
  virtual HRESULT IsUsable() const = 0;
  virtual GUID Format() const = 0;
  // Width and height in pixels.
  virtual DSPixelPair Size() const = 0;
  // The first pixel of row 0, the bottom row.
  virtual void* FirstPixel() const = 0;
  // The lower left corner and the size in world units.
  virtual DSWorldPair WorldPosition() const = 0;
  virtual DSWorldPair WorldSize() const = 0;
  // Bytes from a row to the row above it; negative where the memory lies from the top down. A whole number of
  // components, and no less than a row. 0: tightly packed rows from the bottom up.
  virtual std::int64_t RowStep() const { return 0; }
};

}  // namespace vblur
