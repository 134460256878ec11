#include "host/base/SystemFiles.h"

#include "host/base/LongPath.h"
#include "host/base/LongPath_windows.h"
#include "host/base/SystemError_windows.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace vblur::host {

std::string FlawOfName(const std::filesystem::path& file) {
  // Such as nul, con and, with some systems, nul.png.
  if (FullPathOf(file).starts_with(L"\\\\.\\")) return "it is a device, a file name was expected";
  // A colon would begin the name of a stream in a file.
  const std::filesystem::path plain = WithoutLongPrefix(file.native());
  if (plain.relative_path().native().find_first_of(L"<>:\"|?*") != std::wstring::npos)
    return R"(a file name holds none of < > : " | ? *)";
  return {};
}

std::string SyncFile(const std::filesystem::path& file) {
  constexpr DWORD kAnySharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE handle = CreateFileW(ExtendedPath(file).c_str(), GENERIC_WRITE, kAnySharing, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return LastErrorText();
  const std::string error = FlushFileBuffers(handle) != 0 ? std::string() : LastErrorText();
  CloseHandle(handle);
  return error;
}

// MoveOver has done so.
std::string SyncFolder(const std::filesystem::path& /*folder*/) {
  return {};
}

// A file's access list is its folder's, as that of the file that it replaces most often is.
void CopyPermissions(const std::filesystem::path& from, const std::filesystem::path& to) {
  constexpr DWORD kKept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
  const DWORD old = GetFileAttributesW(ExtendedPath(from).c_str());
  const DWORD now = GetFileAttributesW(ExtendedPath(to).c_str());
  if (old == INVALID_FILE_ATTRIBUTES || now == INVALID_FILE_ATTRIBUTES || (old & kKept) == 0) return;
  SetFileAttributesW(ExtendedPath(to).c_str(), now | (old & kKept));
}

std::string MoveOver(const std::filesystem::path& from, const std::filesystem::path& to) {
  // Not every system asks.
  const DWORD old = GetFileAttributesW(ExtendedPath(to).c_str());
  if (old != INVALID_FILE_ATTRIBUTES && (old & FILE_ATTRIBUTE_READONLY) != 0)
    return SystemErrorText(ERROR_ACCESS_DENIED);
  constexpr DWORD kHow = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
  return MoveFileExW(ExtendedPath(from).c_str(), ExtendedPath(to).c_str(), kHow) != 0 ? std::string() : LastErrorText();
}

void RemoveAtOnce(const wchar_t* file) noexcept {
  DeleteFileW(file);
}

}  // namespace vblur::host
