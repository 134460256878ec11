#include "host/base/SystemFiles.h"

#include <algorithm>
#include <string_view>

#include "host/base/LongPath.h"
#include "host/base/LongPath_windows.h"
#include "host/base/SystemError_windows.h"
#include "host/base/Utf8.h"

#include <windows.h>

namespace vblur::host {

namespace {

constexpr DWORD kAnySharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// What `attempt` gives, true for success, tried again where the error says that another program has the file, as
// viewers and scanners of viruses do for a moment. The last error; 0 for success.
template <typename Attempt>
DWORD WaitingForOthers(Attempt attempt) {
  constexpr int kTries = 50;
  constexpr DWORD kPauseMilliseconds = 10;
  for (int left = kTries;; --left) {
    if (attempt()) return 0;
    const DWORD error = GetLastError();
    if ((error != ERROR_ACCESS_DENIED && error != ERROR_SHARING_VIOLATION) || left == 0) return error;
    Sleep(kPauseMilliseconds);
  }
}

// Whether somebody else does not let it be replaced.
bool IsHeld(const std::filesystem::path& file) {
  const HANDLE handle = CreateFileW(ExtendedPath(file).c_str(), DELETE, kAnySharing, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return GetLastError() == ERROR_SHARING_VIOLATION;
  CloseHandle(handle);
  return false;
}

// COM and LPT with the characters for raised 1, 2 and 3: devices too, though not for every function of the system.
bool IsPortWithARaisedNumber(const std::wstring& name) {
  const std::wstring stem = name.substr(0, name.find_first_of(L".: "));
  if (stem.size() != 4 || std::wstring_view(L"\u00b9\u00b2\u00b3").find(stem[3]) == std::wstring_view::npos)
    return false;
  std::wstring port = stem.substr(0, 3);
  CharUpperW(port.data());
  return port == L"COM" || port == L"LPT";
}

}  // namespace

std::string FlawOfInputName(const std::filesystem::path& file) {
  // Such as nul, con and, with some systems, nul.png.
  if (FullPathOf(file).starts_with(L"\\\\.\\") || IsPortWithARaisedNumber(file.filename().native()))
    return "it is a device, a file name was expected";
  const std::filesystem::path plain = WithoutLongPrefix(file.native());
  if (plain.has_root_name() && !plain.has_root_directory())
    return "it lies in whatever folder is the current one of drive " + Utf8Of(plain.root_name()) + ", expected " +
           Utf8Of(plain.root_name()) + "\\ and the folders, or no drive";
  return {};
}

std::string FlawOfName(const std::filesystem::path& file) {
  if (std::string flaw = FlawOfInputName(file); !flaw.empty()) return flaw;
  // A colon would begin the name of a stream in a file.
  const std::filesystem::path plain = WithoutLongPrefix(file.native());
  const std::wstring text = plain.relative_path().native();
  if (text.find_first_of(L"<>:\"|?*") != std::wstring::npos) return R"(a file name holds none of < > : " | ? *)";
  if (std::ranges::any_of(text, [](wchar_t c) { return c < L' '; })) return "a file name holds no control characters";
  // The system leaves them out: the file would have another name.
  for (const std::filesystem::path& part : plain.relative_path()) {
    const std::wstring& name = part.native();
    if (name.empty() || name == L"." || name == L"..") continue;
    if (name.back() == L'.' || name.back() == L' ') return "the name of a file or folder ends in no dot and no blank";
  }
  return {};
}

const NameLimits kNameLimits{"characters", 255, 32766};

std::size_t LengthOfName(std::string_view name) {
  return Utf16Of(name).size();
}

// The iterator of the compiler's library takes no folder of a long name.
std::vector<std::filesystem::path> EntriesOf(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> names;
  WIN32_FIND_DATAW entry;
  const HANDLE search = FindFirstFileW(ExtendedPath(folder / "*").c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) return names;
  do {
    const std::filesystem::path name(entry.cFileName);
    if (name != "." && name != "..") names.push_back(name);
  } while (FindNextFileW(search, &entry) != 0);
  FindClose(search);
  return names;
}

std::string TryToRead(const std::filesystem::path& file) {
  const DWORD error = WaitingForOthers([&] {
    const HANDLE handle = CreateFileW(ExtendedPath(file).c_str(), GENERIC_READ, kAnySharing, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    return handle != INVALID_HANDLE_VALUE && CloseHandle(handle) != 0;
  });
  return error == 0 ? std::string() : SystemErrorText(error);
}

std::string WriteWhole(const std::filesystem::path& file, std::string_view bytes) {
  constexpr std::size_t kPiece = std::size_t{16} << 20;
  const HANDLE handle = CreateFileW(ExtendedPath(file).c_str(), GENERIC_WRITE, kAnySharing, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return LastErrorText();
  std::string error;
  while (!bytes.empty() && error.empty()) {
    DWORD done = 0;
    const auto piece = static_cast<DWORD>(std::min(bytes.size(), kPiece));
    if (WriteFile(handle, bytes.data(), piece, &done, nullptr) == 0) {
      error = LastErrorText();
    } else if (done != piece) {
      error = SystemErrorText(ERROR_DISK_FULL);
    }
    bytes.remove_prefix(piece);
  }
  if (CloseHandle(handle) == 0 && error.empty()) error = LastErrorText();
  return error;
}

std::string SyncFile(const std::filesystem::path& file) {
  const HANDLE handle = CreateFileW(ExtendedPath(file).c_str(), GENERIC_WRITE, kAnySharing, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return LastErrorText();
  std::string error = FlushFileBuffers(handle) != 0 ? std::string() : LastErrorText();
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
  const DWORD error =
      WaitingForOthers([&] { return MoveFileExW(ExtendedPath(from).c_str(), ExtendedPath(to).c_str(), kHow) != 0; });
  if (error == 0) return {};
  return SystemErrorText(error == ERROR_ACCESS_DENIED && IsHeld(to) ? ERROR_SHARING_VIOLATION : error);
}

void RemoveAtOnce(const wchar_t* file) noexcept {
  DeleteFileW(file);
}

}  // namespace vblur::host
