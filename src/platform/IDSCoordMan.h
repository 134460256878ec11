// The project's coordinate conversions, as the host offers them for one frame.
#pragma once

#include "IDSImage.h"

namespace vblur {

class IDSCoordMan {
 public:
  virtual ~IDSCoordMan() = default;

  // A point in project units, in pixels of the rendered pictures and in pixels at full resolution. They differ at a
  // proxy resolution.
  virtual DSWorldPair ToRenderedPixels(DSWorldPair point) const = 0;
  virtual DSWorldPair ToFullPixels(DSWorldPair point) const = 0;
  // The lower left corner of an image's world box, in whole pixels.
  virtual DSPixelPair PixelOrigin(const IDSImage& image) const = 0;
};

}  // namespace vblur
