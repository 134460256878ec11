// The host's texts are UTF-8. Those of the effect's interfaces are UTF-16, and names of files what the system has them
// in.
#pragma once

#include <concepts>
#include <filesystem>
#include <string>
#include <string_view>

namespace vblur::host {

// Half of a surrogate pair becomes U+FFFD.
std::string Utf8Of(std::u16string_view text);
// What is no UTF-8 becomes U+FFFD.
std::u16string Utf16Of(std::string_view text);

// The name of a file as text, and back. On Windows, where the class's own functions know no UTF-8, names are UTF-16;
// elsewhere they are the same bytes.
std::string Utf8OfPath(const std::filesystem::path& path);
// No other type becomes a path first.
template <std::same_as<std::filesystem::path> Path>
std::string Utf8Of(const Path& path) {
  return Utf8OfPath(path);
}
std::filesystem::path PathOf(std::string_view text);

}  // namespace vblur::host
