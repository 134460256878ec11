// The project's frame as the overlay sees it: its pixels, and how large one is in the viewer's world.
#pragma once

#include <cstdint>

namespace vblur {

struct ProjectFrame {
  // In pixels that are square in world units, whatever the project's aspect.
  std::int32_t width = 0;
  std::int32_t height = 0;
  // World units per pixel.
  float viewScale = 1.0f;
};

// From the project that is open. A size that cannot be read, or that no picture has, counts as that of a frame
// of 1920 x 1080, a scale as 1.
ProjectFrame ReadProjectFrame();

}  // namespace vblur
