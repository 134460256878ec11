// What everything that paints on the overlay is.
#pragma once

namespace vblur {

class HvTDraw {};

}  // namespace vblur
