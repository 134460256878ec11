// Refuses targets without pixels with a line on the standard error stream, the only output of the image code.
#pragma once

#include <cstdio>

namespace vblur {

// False, after a message, if the target is null or has no pixels. Hosts may look for the messages: the texts are fixed,
// class names included.
template <class Texture>
bool isTarget(const Texture* map, const char* nullMessage, const char* bogusMessage) {
  if (map == nullptr) {
    std::fputs(nullMessage, stderr);
    return false;
  }
  if (!map->hasPixels()) {
    std::fputs(bogusMessage, stderr);
    return false;
  }
  return true;
}

}  // namespace vblur
