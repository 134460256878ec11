// Where a picture of the stand-alone host lies in whole pixels. The host's pictures implement it beside
// IDSImage, and the coordinate manager asks them when the effect asks for an image's origin.
#pragma once

#include "platform/IDSImage.h"

namespace vblur::host {

class IHostOrigin {
 public:
  virtual ~IHostOrigin() = default;

  // The whole pixel that the lower left corner of the picture lies at, as its record states it.
  virtual DSPixelPair HostOrigin() const = 0;
};

}  // namespace vblur::host
