// The stand-alone host's coordinate conversions: a proxy factor per axis, and the pixel origins that the
// host's pictures state.
#pragma once

#include <array>

#include "platform/IDSCoordMan.h"

namespace vblur::host {

// Immutable, so effects on several threads may share one.
class CoordMan : public IDSCoordMan {
 public:
  // Factors of x and y: the size of the rendered pictures over that at full resolution.
  explicit CoordMan(const std::array<double, 2>& proxy) : proxy_(proxy) {}

  // Linear: (1, 1) becomes the proxy factors.
  DSWorldPair ToRenderedPixels(DSWorldPair point) const override;
  // A project unit is a pixel at full resolution.
  DSWorldPair ToFullPixels(DSWorldPair point) const override { return point; }
  // The origin of an image that implements IHostOrigin; (0, 0) for any other.
  DSPixelPair PixelOrigin(const IDSImage& image) const override;

 private:
  std::array<double, 2> proxy_;
};

}  // namespace vblur::host
