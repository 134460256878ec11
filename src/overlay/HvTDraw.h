// Marker base of everything that paints on the overlay.
#pragma once

namespace vblur {

class HvTDraw {};

}  // namespace vblur
