#include "host/base/RealPaths.h"

#include <string>

#include "host/base/LongPath.h"
#include "host/base/LongPath_windows.h"

#include <windows.h>

namespace vblur::host {

namespace {

// Of a file or folder that exists, the name in which links, short names and drives of other names end; else empty.
std::wstring FinalPathOf(const std::filesystem::path& path) {
  constexpr DWORD kAnySharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE file = CreateFileW(ExtendedPath(path).c_str(), 0, kAnySharing, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  std::wstring name(MAX_PATH, L'\0');
  DWORD length = GetFinalPathNameByHandleW(file, name.data(), static_cast<DWORD>(name.size()), 0);
  if (length > name.size()) {
    name.resize(length);
    length = GetFinalPathNameByHandleW(file, name.data(), length, 0);
  }
  CloseHandle(file);
  name.resize(length < name.size() ? length : 0);
  return WithoutLongPrefix(name);
}

}  // namespace

std::filesystem::path RealPath(const std::filesystem::path& path) {
  // What does not exist hangs from what does.
  const std::filesystem::path full = FullPathOf(path);
  std::filesystem::path missing;
  for (std::filesystem::path existing = full; existing.has_relative_path(); existing = existing.parent_path()) {
    if (const std::wstring real = FinalPathOf(existing); !real.empty())
      return InOneCase(missing.empty() ? std::filesystem::path(real) : real / missing);
    missing = missing.empty() ? existing.filename() : existing.filename() / missing;
  }
  return InOneCase(full);
}

std::filesystem::path InOneCase(std::filesystem::path path) {
  std::wstring name = path.make_preferred().native();
  // As file systems compare: each unit by itself, in no language.
  CharLowerBuffW(name.data(), static_cast<DWORD>(name.size()));
  return name;
}

std::filesystem::path EndOfLinks(std::filesystem::path path) {
  const DWORD attributes = GetFileAttributesW(ExtendedPath(path).c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return path;
  const std::wstring end = FinalPathOf(path);
  return end.empty() ? path : ExtendedPath(end);
}

}  // namespace vblur::host
