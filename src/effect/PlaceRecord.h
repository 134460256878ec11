// Where an image lies in the project.
#pragma once

#include <cstdint>

namespace vblur {

// Size and position in project user units, and the whole pixel at which the image begins. All zero for
// an image that is absent.
struct PlaceRecord {
  float sizeX = 0.0f;
  float sizeY = 0.0f;
  float positionX = 0.0f;
  float positionY = 0.0f;
  std::int32_t originX = 0;
  std::int32_t originY = 0;
};

}  // namespace vblur
