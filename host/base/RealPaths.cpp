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

std::filesystem::path RealPaths::Of(const std::filesystem::path& file) {
  const auto folder = file.parent_path();
  if (realFolder_.empty() || folder != folder_) {
    folder_ = folder;
    realFolder_ = RealPath(folder.empty() ? "." : folder);
  }
  const auto path = realFolder_ / file.filename();
  std::error_code ignored;
  return std::filesystem::is_symlink(path, ignored) ? RealPath(path) : path;
}

}  // namespace vblur::host
