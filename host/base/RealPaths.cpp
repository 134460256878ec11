#include "host/base/RealPaths.h"

namespace vblur::host {

std::filesystem::path RealPaths::Of(const std::filesystem::path& file) {
  const auto folder = file.parent_path();
  if (realFolder_.empty() || folder != folder_) {
    folder_ = folder;
    realFolder_ = RealPath(folder.empty() ? "." : folder);
  }
  const auto path = realFolder_ / InOneCase(file.filename());
  const auto end = EndOfLinks(path);
  return end == path ? path : RealPath(end);
}

}  // namespace vblur::host
