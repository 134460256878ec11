#include "host/base/RealPaths.h"

#include <system_error>

namespace vblur::host {

// A path that cannot be looked up is compared by name.
std::filesystem::path RealPath(const std::filesystem::path& path) {
  std::error_code error;
  const auto absolute = std::filesystem::absolute(path, error);
  if (error) return path.lexically_normal();
  const auto real = std::filesystem::weakly_canonical(absolute, error);
  return error ? absolute.lexically_normal() : real;
}

std::filesystem::path InOneCase(std::filesystem::path path) {
  return path;
}

std::filesystem::path EndOfLinks(std::filesystem::path path) {
  // The system takes more for a circle, too.
  constexpr int kMostLinks = 40;
  std::error_code error;
  for (int i = 0; i < kMostLinks && std::filesystem::is_symlink(path, error); ++i) {
    const auto next = std::filesystem::read_symlink(path, error);
    if (error) break;
    path = next.is_absolute() ? next : path.parent_path() / next;
  }
  return path;
}

}  // namespace vblur::host
