// The project's frame in pixels, and the size of a pixel in world units.
#pragma once

#include <cstdint>

namespace vblur {

struct ProjectFrame {
  // In pixels that are square in world units.
  std::int32_t width = 0;
  std::int32_t height = 0;
  // World units per pixel.
  float viewScale = 1.0f;
};

// Reads the four sizes of the open project. For a size that cannot be read or is out of range: 1920 x 1080, scale 1.
ProjectFrame ReadProjectFrame();

}  // namespace vblur
