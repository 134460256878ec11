#include "host/base/LongPath.h"

#include <string>
#include <system_error>

namespace vblur::host {

std::filesystem::path ExtendedPath(const std::filesystem::path& path) {
  // Folders have 12 fewer than files.
  constexpr std::size_t kMost = 260 - 12;
  // The class takes the beginning for a folder.
  if (path.native().starts_with(L"\\\\?\\")) return path;
  std::error_code error;
  const auto whole = std::filesystem::absolute(path, error);
  const std::wstring& name = whole.native();
  if (error || name.size() < kMost) return path;
  std::wstring plain = whole.lexically_normal().make_preferred().native();
  if (plain.starts_with(L"\\\\")) return L"\\\\?\\UNC" + plain.substr(1);
  return L"\\\\?\\" + plain;
}

}  // namespace vblur::host
