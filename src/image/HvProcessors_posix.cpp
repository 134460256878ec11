#include "image/HvProcessors.h"

#include <algorithm>
#include <thread>

#include <unistd.h>

namespace vblur {

std::int32_t HvProcessorCount() {
  return static_cast<std::int32_t>(std::max(1u, std::thread::hardware_concurrency()));
}

std::size_t HvSecondCacheBytes() {
  static const long told =
#ifdef _SC_LEVEL2_CACHE_SIZE
      sysconf(_SC_LEVEL2_CACHE_SIZE);
#else
      0;
#endif
  return told > 0 ? static_cast<std::size_t>(told) : kUsualSecondCacheBytes;
}

void HvPlaceThread(std::int32_t, std::int32_t) {}

std::int32_t HvCurrentGroup() {
  return 0;
}

// The pool's threads end with the library.
bool HvLibraryHold::take() {
  return true;
}
void HvLibraryHold::release() {}

}  // namespace vblur
