#include "host/base/LongPath.h"

namespace vblur::host {

std::filesystem::path ExtendedPath(std::filesystem::path path) {
  return path;
}

}  // namespace vblur::host
