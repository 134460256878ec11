#include "host/base/RealPaths.h"

#include <system_error>

namespace vblur::host {

namespace {

// A path that cannot be looked up is compared by name.
std::filesystem::path RealPath(const std::filesystem::path& path) {
  std::error_code error;
  const auto absolute = std::filesystem::absolute(path, error);
  if (error) return path.lexically_normal();
  const auto real = std::filesystem::weakly_canonical(absolute, error);
  return error ? absolute.lexically_normal() : real;
}

}  // namespace

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

std::filesystem::path RealPaths::Of(const std::filesystem::path& file) {
  const auto folder = file.parent_path();
  if (realFolder_.empty() || folder != folder_) {
    folder_ = folder;
    realFolder_ = RealPath(folder.empty() ? "." : folder);
  }
  const auto path = realFolder_ / file.filename();
  std::error_code ignored;
  return std::filesystem::is_symlink(path, ignored) ? RealPath(EndOfLinks(path)) : path;
}

}  // namespace vblur::host
