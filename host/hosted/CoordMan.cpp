#include "host/hosted/CoordMan.h"

#include "host/hosted/HostOrigin.h"

namespace vblur::host {

DSWorldPair CoordMan::ToRenderedPixels(DSWorldPair point) const {
  return {point.x * proxy_[0], point.y * proxy_[1]};
}

DSPixelPair CoordMan::PixelOrigin(const IDSImage& image) const {
  const auto* origin = dynamic_cast<const IHostOrigin*>(&image);
  return origin == nullptr ? DSPixelPair{} : origin->HostOrigin();
}

}  // namespace vblur::host
