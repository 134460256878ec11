#include "host/base/LongPath.h"

#include <string>

#include "host/base/LongPath_windows.h"

#include <windows.h>

namespace vblur::host {

namespace {

constexpr std::wstring_view kPrefix = L"\\\\?\\";
constexpr std::wstring_view kNetworkPrefix = L"\\\\?\\UNC\\";

}  // namespace

std::wstring FullPathOf(const std::filesystem::path& path) {
  std::wstring plain = WithoutLongPrefix(path.native());
  std::wstring full(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetFullPathNameW(plain.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    if (length == 0) return plain;
    const bool fits = length < full.size();
    full.resize(length);
    if (fits) return full;
  }
}

std::wstring WithoutLongPrefix(const std::wstring& path) {
  if (path.starts_with(kNetworkPrefix)) return L"\\\\" + path.substr(kNetworkPrefix.size());
  return path.starts_with(kPrefix) ? path.substr(kPrefix.size()) : path;
}

// The system's limit is 260 characters for a file, and 12 less for a folder: paths below both stay as they are.
std::filesystem::path ExtendedPath(std::filesystem::path path) {
  constexpr std::size_t kShort = 240;
  if (path.empty() || path.native().starts_with(L"\\\\.\\")) return path;
  const std::wstring full = FullPathOf(path);
  if (full.size() < kShort || full.starts_with(L"\\\\.\\")) {
    return path.native().starts_with(kPrefix) ? std::filesystem::path(full) : path;
  }
  if (full.starts_with(L"\\\\")) return std::wstring(kNetworkPrefix) + full.substr(2);
  return std::wstring(kPrefix) + full;
}

}  // namespace vblur::host
