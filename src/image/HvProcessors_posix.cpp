#include "image/HvProcessors.h"

#include <algorithm>
#include <thread>

namespace vblur {

std::int32_t HvProcessorCount() {
  return static_cast<std::int32_t>(std::max(1u, std::thread::hardware_concurrency()));
}

void HvPlaceThread(std::int32_t, std::int32_t) {}

std::int32_t HvCurrentGroup() {
  return 0;
}

// The pool's threads end with the library.
bool HvLibraryHold::Take() {
  return true;
}
void HvLibraryHold::Release() {}

}  // namespace vblur
