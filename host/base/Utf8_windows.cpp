#include "host/base/Utf8.h"

#include <utility>

#include "host/base/LongPath.h"
#include "host/base/LongPath_windows.h"

namespace vblur::host {

std::string Utf8OfPath(const std::filesystem::path& path) {
  const std::wstring native = WithoutLongPrefix(path.native());
  return Utf8Of(std::u16string_view(reinterpret_cast<const char16_t*>(native.data()), native.size()));
}

std::filesystem::path PathOf(std::string_view text) {
  const std::u16string wide = Utf16Of(text);
  // That class takes \\?\ for a folder.
  std::filesystem::path path(WithoutLongPrefix(std::wstring(wide.begin(), wide.end())));
  // What is relative may be meant from another folder than the current one.
  return path.is_absolute() ? ExtendedPath(std::move(path)) : path;
}

}  // namespace vblur::host
