// The pixel origin of a picture of the stand-alone host. HostImage implements it beside IDSImage; CoordMan queries it
// for the origin of an image.
#pragma once

#include "platform/IDSImage.h"

namespace vblur::host {

class IHostOrigin {
 public:
  virtual ~IHostOrigin() = default;

  // The position of the lower left pixel, from the picture's record.
  virtual DSPixelPair HostOrigin() const = 0;
};

}  // namespace vblur::host
