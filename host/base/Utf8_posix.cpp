#include "host/base/Utf8.h"

namespace vblur::host {

std::string Utf8OfPath(const std::filesystem::path& path) {
  return path.native();
}

std::filesystem::path PathOf(std::string_view text) {
  return text;
}

}  // namespace vblur::host
