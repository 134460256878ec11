#include "host/base/Utf8.h"

namespace vblur::host {

std::string Utf8OfPath(const std::filesystem::path& path) {
  const std::wstring& native = path.native();
  return Utf8Of(std::u16string_view(reinterpret_cast<const char16_t*>(native.data()), native.size()));
}

std::filesystem::path PathOf(std::string_view text) {
  const std::u16string wide = Utf16Of(text);
  return std::wstring(wide.begin(), wide.end());
}

}  // namespace vblur::host
