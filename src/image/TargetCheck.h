// What a processor says of a target that it cannot write to. One line on the standard error stream is
// all that the image code ever prints.
#pragma once

#include <cstdio>

namespace vblur {

// False, after the message that fits, when the target is null or has no pixels. Hosts may look for the messages:
// their text is fixed, the class names in them too.
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
